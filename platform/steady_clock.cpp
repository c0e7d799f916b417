#include "platform/steady_clock.h"

namespace qmx {

SteadyClock& SteadyClock::OfTheSystem() {
  static SteadyClock& clock = *new SteadyClock;  // never destroyed: helper threads use it until the process ends
  return clock;
}

}  // namespace qmx
