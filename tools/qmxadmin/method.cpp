#include "tools/qmxadmin/method.h"

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"

namespace qmx {
namespace {

bool IsByChange(const std::string& method) {
  if (method == "full" || method == "changed") return method == "changed";
  throw Error(errors::kInvalidCall, "qmxadmin", "Behind the tables \"full\" or \"changed\" is expected.");
}

const char* Word(bool byChange) { return byChange ? "changed" : "full"; }

}  // namespace

AdminStatus Method(const MethodArguments& arguments) {
  std::vector<std::string> tables = arguments.tablesAndMethod;
  const bool byChange = IsByChange(tables.back());
  tables.pop_back();
  if (tables.empty()) throw Error(errors::kInvalidCall, "qmxadmin", "A table is expected before the method.");
  for (const std::string& table : tables) RequireCopiedTable(table);
  LocalDatabase local(arguments);
  const std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  for (const std::string& table : tables) {
    const auto found = records.find(table);
    const ControlRecord before = found == records.end() ? ControlRecord() : found->second;
    WriteSyncMethod(local, table, byChange);
    std::cout << table << ": " << Word(byChange)
              << (before.byChange == byChange ? ", as before" : std::string(", was ") + Word(before.byChange))
              << (before.inProgress ? "; the copy in progress goes on as it began\n" : "\n");
    if (byChange && !before.lastUpdate) {
      std::cerr << table
                << " has no last update time: its next copy asks the ERP for all changes since 1970-01-01, and "
                << "brings no record that has not changed since. Copy it in full first.\n";
    }
  }
  local.Connection().Close();
  return AdminStatus::Done;
}

}  // namespace qmx
