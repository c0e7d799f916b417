// qmxadmin expand: expands the local calendars into the working intervals of tscalender, and prints how many each has.
// No copy does this. If a calendar cannot be replaced as a whole, it keeps its old intervals and is printed on standard
// error, and the result is Wrong.
#pragma once

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct ExpandArguments : DatabaseArguments {
  OutputForm form = OutputForm::Table;
  bool whole = false;  // each calendar in one transaction
  bool quiet = false;  // prints nothing about calendars that were expanded
};

AdminStatus Expand(const ExpandArguments& arguments);

}  // namespace qmx
