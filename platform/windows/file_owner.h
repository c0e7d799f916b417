// Who owns a file.
#pragma once

#include <string>

namespace qmx {

// Returns the owner's identifier (SID) if the owner is neither this process's user, nor an administrator or the system.
// "unknown" if Windows does not say who owns it.
std::string StrangeOwner(void* file);

}  // namespace qmx
