#include "schema/local_tables.h"

#include <algorithm>
#include <iterator>

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

}  // namespace qmx
