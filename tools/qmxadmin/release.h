// qmxadmin release: takes back the flag that keeps a table's copies out, after a copy that could not take it back
// itself.
#pragma once

#include <string>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

struct ReleaseArguments : DatabaseArguments {
  std::string table;
  bool yes = false;  // nobody is asked
};

// AdminStatus::Wrong where the answer was no. Raises 3219 where somebody should be asked and standard input is no
// terminal.
AdminStatus Release(const ReleaseArguments& arguments);

}  // namespace qmx
