#include "tools/qmxadmin/copy/copy.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/copy/copy_runs.h"
#include "tools/qmxadmin/copy/plan.h"
#include "tools/qmxadmin/local_database.h"

namespace qmx {
namespace {

[[noreturn]] void Refuse(const std::string& why) { throw Error(errors::kInvalidCall, "qmxadmin copy", why); }

void RequireNoComma(const std::string& what, const std::string& text) {
  if (text.find(',') != std::string::npos)
    Refuse(
        fmt::format("{} holds a comma, and qmxdatacopy splits its command line at commas. Use a DSN instead.", what));
}

// Returns the tables as they are named, each once.
std::vector<std::string> TablesOf(const CopyArguments& arguments) {
  std::vector<std::string> tables = arguments.tables;
  if (arguments.all) {
    for (const LocalTable& table : CopiedTables()) tables.push_back(table.name);
  }
  if (tables.empty()) Refuse("Name the tables or give --all.");
  std::vector<std::string> once;
  for (const std::string& table : tables) {
    CopiedTable(CodeOf(table));
    RequireNoComma("The table " + table, table);
    if (std::find(once.begin(), once.end(), table) == once.end()) once.push_back(table);
  }
  return once;
}

// Leaves blanks and empty pieces to the run.
std::string CommandLineAround(const CopyArguments& arguments, const std::string& table) {
  return fmt::format("{},{},{},{},{}{}{}", arguments.connection, arguments.database, table, arguments.logs,
                     arguments.component, arguments.request.empty() ? "" : ",", arguments.request);
}

void RequireRunnable(const CopyArguments& arguments) {
  RequireNoComma("CONNECTION", arguments.connection);
  RequireNoComma("DATABASE", arguments.database);
  RequireNoComma("--logs", arguments.logs);
  if (std::count(arguments.component.begin(), arguments.component.end(), ',') != 1)
    Refuse("--component must be two components with a comma between them: \"COMPONENT1, COMPONENT2\".");
  if (arguments.jobs < 1) Refuse("--jobs must be 1 or more.");
}

// Also checks that the database can be opened before any copy is started.
std::map<std::string, ControlRecord> ReadControlRecordsOf(const CopyArguments& arguments) {
  LocalDatabase local(arguments, Purpose::Write);
  std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  local.Connection().Close();
  return records;
}

// A quiet summary has only the tables that were not copied.
Listing Summary(const std::vector<CopyRun>& runs, const std::map<std::string, ControlRecord>& records,
                const CopyArguments& arguments) {
  Listing listing{{{.key = "table", .title = "TABLE"},
                   {.key = "description", .title = "DESCRIPTION", .prose = true, .weight = 1},
                   {.key = "method", .title = "METHOD", .weight = 2},
                   {.key = "result", .title = "RESULT", .prose = true, .weight = 9},
                   {.key = "added", .title = "ADDED", .toTheRight = true},
                   {.key = "updated", .title = "UPDATED", .toTheRight = true},
                   {.key = "removed", .title = "REMOVED", .toTheRight = true},
                   {.key = "milliseconds", .title = "MS", .toTheRight = true, .weight = 4},
                   {.key = "exit_status", .title = "STATUS", .toTheRight = true, .weight = 3}},
                  {}};
  const auto orNull = [](const auto& value) { return value ? Variant(static_cast<double>(*value)) : Variant::Null(); };
  for (const CopyRun& run : runs) {
    if (arguments.quiet && arguments.form == OutputForm::Table && run.exitStatus == 0) continue;
    const std::string code = CodeOf(run.table);
    const auto record = records.find(code);
    const bool byChange = !arguments.full && record != records.end() && record->second.byChange && run.table == code;
    const std::optional<CopyCounts>& counts = run.counts;
    listing.rows.push_back({run.table, std::string(DescriptionOfTable(code)), MethodWord(byChange), run.result,
                            counts ? Variant(static_cast<double>(counts->added)) : Variant::Null(),
                            counts ? Variant(static_cast<double>(counts->updated)) : Variant::Null(),
                            counts ? Variant(static_cast<double>(counts->removed)) : Variant::Null(),
                            run.duration ? Variant(static_cast<double>(run.duration->count())) : Variant::Null(),
                            orNull(run.exitStatus)});
  }
  return listing;
}

}  // namespace

AdminStatus CopyTables(const CopyArguments& arguments) {
  RequireRunnable(arguments);
  std::vector<CopyRun> runs;
  for (const std::string& table : TablesOf(arguments)) runs.push_back({table, CommandLineAround(arguments, table)});
  const std::map<std::string, ControlRecord> records = ReadControlRecordsOf(arguments);
  RunCopies(runs, {arguments.logs,
                   static_cast<std::size_t>(arguments.jobs),
                   {.full = arguments.full, .whole = arguments.whole},
                   arguments.quiet});
  const Listing summary = Summary(runs, records, arguments);
  if (!arguments.quiet || arguments.form == OutputForm::Json || !summary.rows.empty()) Print(summary, arguments.form);
  const bool allCopied = std::all_of(runs.begin(), runs.end(), [](const CopyRun& run) { return run.exitStatus == 0; });
  return allCopied ? AdminStatus::Done : AdminStatus::Wrong;
}

}  // namespace qmx
