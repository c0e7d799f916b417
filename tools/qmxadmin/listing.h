// Rows of data that a command tells: a table for people, JSON for programs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "platform/variant.h"

namespace qmx {

struct ListingColumn {
  std::string key;          // in JSON
  std::string title;        // above the column of the table; a column without one is in JSON only
  bool toTheRight = false;  // as numbers stand
  bool prose = false;       // gives way first where the terminal is narrow
  bool shownEmpty = true;   // also in a table where no row has anything in it
};

struct Listing {
  std::vector<ListingColumn> columns;
  std::vector<std::vector<Variant>> rows;  // a value for each column; null where there is none
};

enum class OutputForm { Table, Json };

// On standard output, the table as wide as the terminal allows.
void Print(const Listing& listing, OutputForm form);

}  // namespace qmx
