// What a child process is on a POSIX system.
#pragma once

#include <sys/types.h>

#include "tools/qmxadmin/system/child_process.h"

namespace qmx {

struct ChildProcess::State {
  int progress = -1;  // both without waiting
  int output = -1;
  pid_t process = -1;
  bool hasEnded = false;
  int end = 0;  // as waitpid tells it
};

}  // namespace qmx
