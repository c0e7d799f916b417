// The tables of the local database: their columns, keys and indexes, one source of truth for every database system.
//
// These are the seventeen tables that are copied from the ERP, the control table tstables and the expanded calendars,
// tscalender. Codes, descriptions, types and statuses are texts, wide enough for every text of the ERP; rates, factors,
// times, distances and quantities are numbers of double precision; line numbers and times of day are integers; yes/no
// flags are small integers. dialect.h has the statements that create them.
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
  bool startsAtZero = false;  // 0 in a row without a value
  bool isTableCode = false;   // of a table of this system: compares without regard to case
};

struct LocalTable {
  std::string name;
  std::string description;  // of a table that is copied from the ERP, in messages to the scheduling server; else empty
  std::vector<LocalColumn> columns;
  std::vector<std::string> key;      // none: rows may be equal
  std::vector<std::string> indexed;  // columns of an index besides the key
};

const std::vector<LocalTable>& LocalTables();  // in the order of their names, tstables and tscalender last

// Returns the description of a table, by its name in any case; empty if no such table is copied.
std::string_view DescriptionOfTable(std::string_view name);

}  // namespace qmx
