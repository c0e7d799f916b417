// Which calls of components a request to end (interruption.h) may interrupt.
#pragma once

#include <string_view>

#include "platform/names.h"
#include "platform/running_call.h"
#include "platform/scheduling_server.h"

namespace qmx {

// False for calls to the scheduling server, for Close of the ERP's manager, and for calls within calls. `progId` is
// what the object, or the one that returned it, was created from; it may be null.
inline bool MayBeInterrupted(const char* progId, std::string_view member) {
  return !IsSchedulingServers(progId) && !SameName(member, "Close") && !RunningCall::Member();
}

}  // namespace qmx
