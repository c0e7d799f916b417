// How a table that is there differs from the one that would have been made.
#pragma once

#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "schema/local_tables.h"

namespace qmx {

// One sentence a difference; none where the table serves as it is. A wider text or another order of the columns is no
// difference.
std::vector<std::string> Differences(const LocalTable& wanted, const TableDescription& found);

}  // namespace qmx
