// Checks the local database: connection, default database and every table.
#pragma once

#include "tools/qmxadmin/check/finding_sink.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

void CheckDatabase(const DatabaseArguments& arguments, FindingSink& findings);

}  // namespace qmx
