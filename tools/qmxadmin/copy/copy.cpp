#include "tools/qmxadmin/copy/copy.h"

#include <algorithm>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/copy/copy_runs.h"
#include "tools/qmxadmin/copy/plan.h"
#include "tools/qmxadmin/copy/signals.h"
#include "tools/qmxadmin/local_database.h"

namespace qmx {
namespace {

[[noreturn]] void Refuse(const std::string& why) { throw Error(errors::kInvalidCall, "qmxadmin copy", why); }

void RequireNoComma(const std::string& what, const std::string& text) {
  if (text.find(',') != std::string::npos)
    Refuse(what + " holds a comma, at which qmxdatacopy splits its command line. A DSN can name such a database.");
}

std::vector<std::string> TablesOf(const CopyArguments& arguments) {
  std::vector<std::string> tables = arguments.tables;
  if (arguments.all) {
    for (const LocalTable& table : CopiedTables()) tables.push_back(table.name);
  }
  if (tables.empty()) Refuse("Name the tables, or --all.");
  std::vector<std::string> once;
  for (const std::string& table : tables) {
    RequireCopiedTable(CodeOf(table));
    RequireNoComma("The table " + table, table);
    if (std::find(once.begin(), once.end(), table) == once.end()) once.push_back(table);
  }
  return once;
}

// Each piece as it is given: what a run makes of blanks and of empty pieces is its own affair.
std::string CommandLineAround(const CopyArguments& arguments, const std::string& table) {
  return arguments.connection + "," + arguments.database + "," + table + "," + arguments.logs + "," +
         arguments.component + (arguments.request.empty() ? "" : "," + arguments.request);
}

void RequireRunnable(const CopyArguments& arguments) {
  RequireNoComma("CONNECTION", arguments.connection);
  RequireNoComma("DATABASE", arguments.database);
  RequireNoComma("--logs", arguments.logs);
  if (std::count(arguments.component.begin(), arguments.component.end(), ',') != 1)
    Refuse("--component is two pieces with a comma between: \"COMPONENT1, COMPONENT2\".");
  if (arguments.jobs < 1) Refuse("--jobs is how many copies run at a time: 1 or more.");
}

// Also finds out whether the database is there before any copy is started.
std::map<std::string, ControlRecord> ReadControlRecordsOf(const CopyArguments& arguments) {
  LocalDatabase local(arguments);
  std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  local.Connection().Close();
  return records;
}

Listing Summary(const std::vector<CopyRun>& runs, const std::map<std::string, ControlRecord>& records) {
  Listing listing{{{.key = "table", .title = "TABLE"},
                   {.key = "description", .title = "DESCRIPTION", .prose = true},
                   {.key = "method", .title = "METHOD"},
                   {.key = "result", .title = "RESULT"},
                   {.key = "added", .title = "ADDED", .toTheRight = true},
                   {.key = "updated", .title = "UPDATED", .toTheRight = true},
                   {.key = "removed", .title = "REMOVED", .toTheRight = true},
                   {.key = "seconds", .title = "SECONDS", .toTheRight = true},
                   {.key = "exit_status", .title = "STATUS", .toTheRight = true}},
                  {}};
  const auto orNull = [](const auto& value) { return value ? Variant(static_cast<double>(*value)) : Variant::Null(); };
  for (const CopyRun& run : runs) {
    const std::string code = CodeOf(run.table);
    const auto record = records.find(code);
    const bool byChange = record != records.end() && record->second.byChange && run.table == code;
    const std::optional<CopyCounts>& counts = run.counts;
    listing.rows.push_back({run.table, std::string(DescriptionOfTable(code)), byChange ? "changed" : "full", run.result,
                            counts ? Variant(static_cast<double>(counts->added)) : Variant::Null(),
                            counts ? Variant(static_cast<double>(counts->updated)) : Variant::Null(),
                            counts ? Variant(static_cast<double>(counts->removed)) : Variant::Null(),
                            orNull(run.seconds), orNull(run.exitStatus)});
  }
  return listing;
}

}  // namespace

AdminStatus CopyTables(const CopyArguments& arguments) {
  RequireRunnable(arguments);
  std::vector<CopyRun> runs;
  for (const std::string& table : TablesOf(arguments)) runs.push_back({table, CommandLineAround(arguments, table)});
  const std::map<std::string, ControlRecord> records = ReadControlRecordsOf(arguments);
  RunCopies(runs, arguments.logs, static_cast<std::size_t>(arguments.jobs));
  Print(Summary(runs, records), arguments.form);
  const bool allCopied = std::all_of(runs.begin(), runs.end(), [](const CopyRun& run) { return run.exitStatus == 0; });
  return allCopied ? AdminStatus::Done : AdminStatus::Wrong;
}

}  // namespace qmx
