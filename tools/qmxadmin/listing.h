// Rows that a command prints: as a table for people or as JSON for programs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "platform/variant.h"

namespace qmx {

struct ListingColumn {
  std::string key;          // the name in JSON
  std::string title = {};   // the heading in the table; a column without a title appears in JSON only
  bool toTheRight = false;  // aligned to the right, as numbers are
  bool prose = false;       // shortened first on a narrow terminal
  bool shownEmpty = true;   // if false, a column without any value is left out of the table
  int weight = 5;           // on a narrow terminal the column with the least weight is left out first
};

struct Listing {
  std::vector<ListingColumn> columns;
  std::vector<std::vector<Variant>> rows;  // one value per column, or null
};

enum class OutputForm { Table, Json };

// Prints to standard output. The table is at most as wide as the terminal.
void Print(const Listing& listing, OutputForm form);

// Null for an empty text, so that tables show "-" and JSON shows null.
Variant TextOrNull(const std::string& text);

}  // namespace qmx
