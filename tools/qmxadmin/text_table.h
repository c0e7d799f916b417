// Listings as tables: a line of titles, a line for each row, two blanks between the columns.
#pragma once

#include <string>

#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/terminal.h"

namespace qmx {

// On a terminal no line is wider than it: prose gives way first, then whatever is widest, and ends in "…". Elsewhere
// nothing is cut.
std::string TextTable(const Listing& listing, const Terminal& terminal);

}  // namespace qmx
