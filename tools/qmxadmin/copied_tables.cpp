#include "tools/qmxadmin/copied_tables.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "platform/error.h"

namespace qmx {

const std::vector<LocalTable>& CopiedTables() {
  static const std::vector<LocalTable> kCopied = [] {
    std::vector<LocalTable> copied;
    std::copy_if(LocalTables().begin(), LocalTables().end(), std::back_inserter(copied),
                 [](const LocalTable& table) { return !table.description.empty(); });
    return copied;
  }();
  return kCopied;
}

const LocalTable& CopiedTable(const std::string& code) {
  std::vector<std::string_view> known;
  for (const LocalTable& table : CopiedTables()) {
    if (table.name == code) return table;
    known.push_back(table.name);
  }
  // A connection text in the wrong place is not repeated, because it may hold a password.
  const std::string named = code.find('=') == std::string::npos ? fmt::format("table \"{}\"", code) : "such table";
  throw Error(errors::kInvalidCall, "qmxadmin",
              fmt::format("There is no {}. The tables are {}.", named, fmt::join(known, ", ")));
}

std::vector<std::string> TablesToWorkOn(const std::vector<std::string>& named, bool all) {
  std::vector<std::string> tables;
  const auto add = [&](const std::string& table) {
    if (std::find(tables.begin(), tables.end(), table) == tables.end()) tables.push_back(table);
  };
  for (const std::string& code : named) add(CopiedTable(code).name);
  if (all) {
    for (const LocalTable& table : CopiedTables()) add(table.name);
  }
  if (tables.empty()) throw Error(errors::kInvalidCall, "qmxadmin", "Name the tables or give --all.");
  return tables;
}

}  // namespace qmx
