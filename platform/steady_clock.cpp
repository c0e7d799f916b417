#include "platform/steady_clock.h"

namespace qmx {

SteadyClock& SteadyClock::OfTheSystem() {
  static SteadyClock clock;
  return clock;
}

}  // namespace qmx
