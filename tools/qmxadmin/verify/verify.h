// qmxadmin verify: compares local tables with what the ERP lists.
//
// The engine itself makes a full copy of the table into a temporary SQLite database, without scheduling server, logs
// and control records of its own, so that both sides were mapped by the same rules; then the rows are compared by key.
// Memory stays the same however large a table is; the temporary database takes its room in $TMPDIR, else /tmp.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/admin_status.h"
#include "tools/qmxadmin/database_arguments.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

struct VerifyArguments : DatabaseArguments {
  std::vector<std::string> tables;
  std::string component;  // "COMPONENT1, COMPONENT2"
  OutputForm form = OutputForm::Table;
};

// Every difference on standard output as it is found, and a line a table. Wrong where there is any. Raises what the
// copy raises, and 5 for a local table that cannot be compared.
AdminStatus Verify(const VerifyArguments& arguments);

}  // namespace qmx
