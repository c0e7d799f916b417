#include "tools/qmxadmin/copied_tables.h"

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

void RequireCopiedTable(const std::string& code) {
  std::string known;
  for (const LocalTable& table : CopiedTables()) {
    if (table.name == code) return;
    known += (known.empty() ? "" : ", ") + table.name;
  }
  // A connection text in the wrong place is not repeated: it may hold a password.
  const std::string named = code.find('=') == std::string::npos ? "table \"" + code + "\"" : "such table";
  throw Error(errors::kInvalidCall, "qmxadmin", "There is no " + named + ". The tables are " + known + ".");
}

}  // namespace qmx
