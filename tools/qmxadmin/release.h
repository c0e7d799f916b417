// qmxadmin release: clears a table's in-progress flag after a copy that could not clear it.
#pragma once

#include <string>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct ReleaseArguments : DatabaseArguments {
  std::string table;
  bool yes = false;  // releases without asking
  OutputForm form = OutputForm::Table;
  bool quiet = false;  // prints nothing but the question
};

// Returns Wrong if the user answered no. Raises 3219 if the user must be asked and standard input is not a terminal.
AdminStatus Release(const ReleaseArguments& arguments);

}  // namespace qmx
