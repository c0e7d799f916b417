// The log folder's part of a check: it is there, and the logs in it can be written.
#pragma once

#include <string>

#include "tools/qmxadmin/check/findings.h"

namespace qmx {

void CheckLogs(const std::string& folder, Findings& findings);

}  // namespace qmx
