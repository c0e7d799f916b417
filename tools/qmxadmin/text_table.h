// Listings as tables: one line of titles, one line per row, two blanks between the columns.
#pragma once

#include <string>

#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/terminal.h"

namespace qmx {

// Lines are no wider than the terminal. Prose is cut first, to no less than 8 columns, and ends in "…". Then whole
// columns are left out, the one with the least weight first and of several the last. Codes and numbers are never cut,
// except in the first column if the terminal is narrower than it. Nothing is cut or left out if the output is not a
// terminal.
std::string TextTable(const Listing& listing, const Terminal& terminal);

}  // namespace qmx
