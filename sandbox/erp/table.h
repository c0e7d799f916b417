// The ERP's tables: the managers, the records, the audit trail and the file follow from one description. A new table is
// a new entry in one of the lists of AllTables.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvan {

// How a column is stored, and the kind that its getter returns.
enum class ColumnType {
  Text,    // a text
  Whole,   // a whole number
  Number,  // a double
  Day,     // "2026-11-20", returned as a date-time
  Moment,  // "2026-11-20 14:05:09" or null, returned as an ERP date object
};

struct Column {
  std::string_view name;  // the ERP's own
  ColumnType type;
  std::string_view getter;  // on the record object
};

struct Table {
  std::string_view code;         // "tsmdm030", also the table's name in the file
  std::string_view description;  // for people
  std::string_view manager;      // ProgIDs
  std::string_view record;
  std::string_view list;  // the manager's listing method
  std::vector<std::string_view> key;
  std::vector<std::string_view> bounds;  // the column of each from/to pair of the listing
  std::vector<Column> columns;           // the key's among them

  // Returns the column's index; columns.size() if there is none. Names compare without regard to case.
  std::size_t Find(std::string_view column) const;
  const Column& At(std::string_view column) const { return columns.at(Find(column)); }
  bool IsKey(std::string_view column) const;
};

const std::vector<Table>& AllTables();

// Returns the table with that code; null if there is none.
const Table* FindTable(std::string_view code);

// The three groups of AllTables.
std::vector<Table> MasterTables();
std::vector<Table> CalendarTables();
std::vector<Table> OrderTables();

}  // namespace orvan
