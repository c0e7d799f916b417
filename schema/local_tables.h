// The tables of the local database: their columns, keys and indexes, one source of truth for every database system.
//
// These are the seventeen tables that are copied from the ERP, the control table tstables, and tscalender with the
// expanded calendars. Codes, descriptions, types and statuses are texts, wide enough for every value of the ERP. Rates,
// factors, times, distances and quantities are doubles. Line numbers and times of day are integers. Yes/no flags are
// small integers. dialect.h makes the create statements.
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
  bool startsAtZero = false;  // has 0 as its default
  bool isTableCode = false;   // holds a local table's code, in which case does not matter
};

struct LocalTable {
  std::string name;
  std::string description;  // as in messages to the scheduling server; empty if the table is not copied from the ERP
  std::vector<LocalColumn> columns;
  std::vector<std::string> key;      // none: rows may be alike
  std::vector<std::string> indexed;  // columns of an index besides the key's
};

const std::vector<LocalTable>& LocalTables();  // in the order of their names, tstables and tscalender last

// Returns the table of exactly this name. Raises 5 if there is none.
const LocalTable& LocalTableNamed(std::string_view name);

// The description of the table of that name, in any case; empty if no such table is copied.
std::string_view DescriptionOfTable(std::string_view name);

}  // namespace qmx
