// The tables of the local database: their columns, keys and indexes, one source of truth for every database system.
//
// There are the seventeen tables that are copied from the ERP, the control table tstables and the expanded calendars,
// tscalender. Codes, descriptions, types and statuses are texts, wide enough to be no obstacle, since whatever the ERP
// gives has a text; rates, factors, times, distances and quantities are numbers of double precision; line numbers and
// times of day are integers; yes/no flags are small integers. What a statement of create looks like is in dialect.h.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/variant.h"

namespace qmx {

struct LocalColumn {
  std::string name;
  Variant::Kind type;         // Text, Int16, Int32, Double or DateTime
  int width = 0;              // of a text, in characters
  bool startsAtZero = false;  // in a row that says nothing of it
  bool isTableCode = false;   // of a table of this system: capitals and small letters mean the same
};

struct LocalTable {
  std::string name;
  std::string description;  // of a table that is copied from the ERP, as the scheduling server is told it; else empty
  std::vector<LocalColumn> columns;
  std::vector<std::string> key;      // none: rows may be alike
  std::vector<std::string> indexed;  // columns of an index besides the key's
};

const std::vector<LocalTable>& LocalTables();  // in the order of their names, tstables and tscalender last

// Returns the table of exactly this name. Raises 5 if there is none.
const LocalTable& LocalTableNamed(std::string_view name);

// Of the table of that name, in whatever case; empty where no such table is copied.
std::string_view DescriptionOfTable(std::string_view name);

}  // namespace qmx
