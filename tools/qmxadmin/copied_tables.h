// The seventeen local tables that are copied from the ERP.
#pragma once

#include <string>
#include <vector>

#include "schema/local_tables.h"

namespace qmx {

const std::vector<LocalTable>& CopiedTables();  // in the order of their names

// Returns the table of this code. Codes are in small letters, as in tstables. Raises 5 for an unknown code and lists
// the known ones.
const LocalTable& CopiedTable(const std::string& code);

// Returns the named table codes, each once, and with `all` the other tables too. Raises 5 for an unknown code, and if
// no table is named.
std::vector<std::string> TablesToWorkOn(const std::vector<std::string>& named, bool all);

}  // namespace qmx
