#include "schema/local_tables.h"

#include <algorithm>
#include <iterator>

#include "platform/error.h"
#include "platform/names.h"
#include "schema/column_words.h"

namespace qmx {
namespace {

std::vector<LocalTable> AllTables() {
  std::vector<LocalTable> all;
  for (std::vector<LocalTable> group : {MasterDataTables(), CalendarTables(), OrderTables()}) {
    std::move(group.begin(), group.end(), std::back_inserter(all));
  }
  std::sort(all.begin(), all.end(),
            [](const LocalTable& one, const LocalTable& other) { return one.name < other.name; });
  std::vector<LocalTable> control = ControlTables();
  std::move(control.begin(), control.end(), std::back_inserter(all));
  return all;
}

}  // namespace

const std::vector<LocalTable>& LocalTables() {
  static const std::vector<LocalTable> kTables = AllTables();
  return kTables;
}

const LocalTable& LocalTableNamed(std::string_view name) {
  const auto table = std::find_if(LocalTables().begin(), LocalTables().end(),
                                  [name](const LocalTable& known) { return known.name == name; });
  if (table != LocalTables().end()) return *table;
  throw Error(errors::kInvalidCall, "schema", "There is no local table \"" + std::string(name) + "\".");
}

std::string_view DescriptionOfTable(std::string_view name) {
  const auto table = std::find_if(LocalTables().begin(), LocalTables().end(),
                                  [name](const LocalTable& known) { return SameName(known.name, name); });
  return table == LocalTables().end() ? std::string_view() : table->description;
}

}  // namespace qmx
