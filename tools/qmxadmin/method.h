// qmxadmin method: how tables are copied from their next copy on, in full or by change.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

struct MethodArguments : DatabaseArguments {
  std::vector<std::string> tablesAndMethod;  // last stands "full" or "changed"
};

// Changes nothing where one of the tables or the method is not known.
AdminStatus Method(const MethodArguments& arguments);

}  // namespace qmx
