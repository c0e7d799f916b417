// The copies that run on this machine.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/datetime.h"

namespace qmx {

struct RunningCopy {
  pid_t process = 0;
  DateTime since;  // local time
};

// The processes named qmxdatacopy whose command line names the table, into whatever database. Those whose command line
// may not be read are not among them.
std::vector<RunningCopy> RunningCopiesOf(const std::string& tableCode);

}  // namespace qmx
