// Checks the log folder: it exists, the logs in it can be written and belong to
// the right user, and the file system has room.
#pragma once

#include <cstdint>
#include <string>

#include "tools/qmxadmin/check/finding_sink.h"

namespace qmx {

void CheckLogs(const std::string& folder, FindingSink& findings);

// Returns whether so many free bytes are enough for the logs of some time.
bool IsEnoughRoom(std::uintmax_t freeBytes);

}  // namespace qmx
