// The copies that are running on this machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/datetime.h"

namespace qmx {

struct RunningCopy {
  std::int64_t process = 0;
  std::string connection;  // of its command line, and so is the default database
  std::string database;
  DateTime since;  // local time
};

// Returns the processes named qmxdatacopy whose command line names the table, whatever database they copy into.
// Processes whose command line this user may not read are left out.
std::vector<RunningCopy> RunningCopiesOf(const std::string& tableCode);

}  // namespace qmx
