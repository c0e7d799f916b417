// The seventeen tables that are copied, among the local ones.
#pragma once

#include <string>
#include <vector>

#include "schema/local_tables.h"

namespace qmx {

const std::vector<LocalTable>& CopiedTables();  // in the order of their names

// Raises 5 for a code that is none of theirs, naming those that are. Codes are in small letters, as tstables has them.
void RequireCopiedTable(const std::string& code);

}  // namespace qmx
