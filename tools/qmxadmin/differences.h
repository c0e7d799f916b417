// Differences between an existing table and its definition.
#pragma once

#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "schema/local_tables.h"

namespace qmx {

// Returns one sentence per difference, and none if copies can use the table. A wider text column and another order of
// the columns are not differences.
std::vector<std::string> Differences(const LocalTable& wanted, const TableDescription& found);

}  // namespace qmx
