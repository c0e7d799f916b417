#include "erp/table.h"

#include <iterator>

#include "binding/names.h"

namespace orvan {

std::size_t Table::Find(std::string_view column) const {
  std::size_t place = 0;
  while (place < columns.size() && !SameName(columns[place].name, column)) ++place;
  return place;
}

bool Table::IsKey(std::string_view column) const {
  for (const std::string_view part : key)
    if (SameName(part, column)) return true;
  return false;
}

const std::vector<Table>& AllTables() {
  static const std::vector<Table> tables = [] {
    std::vector<Table> all;
    for (auto group : {MasterTables, CalendarTables, OrderTables}) {
      std::vector<Table> some = group();
      all.insert(all.end(), std::make_move_iterator(some.begin()), std::make_move_iterator(some.end()));
    }
    return all;
  }();
  return tables;
}

const Table* FindTable(std::string_view code) {
  for (const Table& table : AllTables())
    if (SameName(table.code, code)) return &table;
  return nullptr;
}

}  // namespace orvan
