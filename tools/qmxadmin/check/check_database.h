// The local database's part of a check: connection, default database, every table.
#pragma once

#include "tools/qmxadmin/check/findings.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

void CheckDatabase(const DatabaseArguments& arguments, Findings& findings);

}  // namespace qmx
