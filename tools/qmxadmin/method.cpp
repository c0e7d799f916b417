#include "tools/qmxadmin/method.h"

#include <fmt/format.h>

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"

namespace qmx {
namespace {

bool IsByChange(const std::string& method) {
  if (method == "full" || method == "changed") return method == "changed";
  throw Error(errors::kInvalidCall, "qmxadmin", "The last argument must be \"full\" or \"changed\".");
}

struct Change {
  std::string table;
  ControlRecord before;
};

void PrintLine(const Change& change, bool byChange) {
  const ControlRecord& before = change.before;
  std::cout << fmt::format(
      "{}: {}, {}{}\n", change.table, MethodWord(byChange),
      before.byChange == byChange ? "as before" : fmt::format("was {}", MethodWord(before.byChange)),
      before.inProgress ? "; the copy in progress keeps its method" : "");
}

void PrintJson(const std::vector<Change>& changes, bool byChange) {
  Listing listing{{{.key = "table"}, {.key = "method"}, {.key = "was"}, {.key = "in_progress"}}, {}};
  for (const auto& [table, before] : changes) {
    listing.rows.push_back({table, MethodWord(byChange), MethodWord(before.byChange), before.inProgress});
  }
  Print(listing, OutputForm::Json);
}

void WarnWithoutLastUpdate(const std::string& table) {
  std::cerr << fmt::format(
      "{} has no last update time. Its next copy asks the ERP for all changes since 1970-01-01 and does not copy "
      "records without a change. Copy it in full first.\n",
      table);
}

}  // namespace

AdminStatus Method(const MethodArguments& arguments) {
  std::vector<std::string> named = arguments.tablesAndMethod;
  const bool byChange = IsByChange(named.back());
  named.pop_back();
  const std::vector<std::string> tables = TablesToWorkOn(named, arguments.all);
  LocalDatabase local(arguments, Purpose::Write);
  const std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  std::vector<Change> changes;
  for (const std::string& table : tables) {
    const auto found = records.find(table);
    changes.push_back({table, found == records.end() ? ControlRecord() : found->second});
    WriteSyncMethod(local, table, byChange);
    if (arguments.form == OutputForm::Table && !arguments.quiet) PrintLine(changes.back(), byChange);
    if (byChange && !changes.back().before.lastUpdate) WarnWithoutLastUpdate(table);
  }
  if (arguments.form == OutputForm::Json) PrintJson(changes, byChange);
  local.Connection().Close();
  return AdminStatus::Done;
}

}  // namespace qmx
