// The number of a run, which no other run has.
#pragma once

#include <string>

namespace qmx {

// A random UUID, version 4. Raises 51 if the kernel gives no random bytes.
std::string NewRunNumber();

}  // namespace qmx
