// The exit status of qmxadmin.
#pragma once

namespace qmx {

enum class AdminStatus {
  Done = 0,
  Wrong = 1,   // A problem was found, or nothing was changed on request. Standard output names it.
  Failed = 2,  // The command failed or its arguments are wrong. Standard error gives the reason.
};

}  // namespace qmx
