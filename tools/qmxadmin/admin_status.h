// What the process ends with.
#pragma once

namespace qmx {

enum class AdminStatus {
  Done = 0,
  Wrong = 1,   // something is not as it should be, or was left as it is; standard output says what
  Failed = 2,  // the command failed, or its arguments are wrong; standard error says why
};

}  // namespace qmx
