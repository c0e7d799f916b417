// qmxadmin release: clears a table's in-progress flag after a copy that could not clear it.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct ReleaseArguments : DatabaseArguments {
  std::vector<std::string> tables;
  std::string logs;    // the copies' LOGDIR, or empty
  bool force = false;  // releases even if a process on this machine copies the table
  bool yes = false;    // releases without asking
  OutputForm form = OutputForm::Table;
  bool quiet = false;  // prints nothing but the question
};

// Returns Wrong if the user answered no, or if a table is left because a process on this machine copies it. Raises 3219
// if the user must be asked and standard input is not a terminal.
AdminStatus Release(const ReleaseArguments& arguments);

}  // namespace qmx
