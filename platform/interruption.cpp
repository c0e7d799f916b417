#include "platform/interruption.h"

#include <string>

#include "platform/error.h"

namespace qmx {

void Interruption::RaiseIfRequested() {
  if (const char* const what = what_.exchange(nullptr))
    throw Error(errors::kInterrupted, "Interrupted", std::string(what) + " asked the program to end.");
}

}  // namespace qmx
