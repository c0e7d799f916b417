// qmxadmin expand: turns the local calendars into the intervals of tscalender, which no copy does, and tells how many
// there are.
#pragma once

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"

namespace qmx {

AdminStatus Expand(const DatabaseArguments& arguments);

}  // namespace qmx
