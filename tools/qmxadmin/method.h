// qmxadmin method: sets the sync method of tables, full or changed. It takes effect with the next copy.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct MethodArguments : DatabaseArguments {
  std::vector<std::string> tablesAndMethod;  // table codes, followed by "full" or "changed"
  bool all = false;                          // all tables, in addition to those that are named
  OutputForm form = OutputForm::Table;
  bool quiet = false;  // prints warnings only
};

// Changes nothing if one of the tables or the method is unknown.
AdminStatus Method(const MethodArguments& arguments);

}  // namespace qmx
