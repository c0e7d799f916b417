// qmxadmin verify: compares local tables with what the ERP lists.
//
// The engine makes a full copy of each table into a temporary SQLite database in $TMPDIR or /tmp, so that one mapping
// serves both sides. The rows are then compared by key. The memory needed does not depend on the size of the table.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct VerifyArguments : DatabaseArguments {
  std::vector<std::string> tables;
  bool all = false;           // all tables, in addition to those that are named
  bool afterChanged = false;  // leaves out the columns that a copy by change does not bring
  std::string component;      // "COMPONENT1, COMPONENT2"
  OutputForm form = OutputForm::Table;
  bool quiet = false;  // prints nothing about tables without a difference
};

// Prints each difference as it is found, and a summary line per table. Returns Wrong if there is a difference. Raises
// what the copy raises, and 5 for a local table that cannot be compared.
AdminStatus Verify(const VerifyArguments& arguments);

}  // namespace qmx
