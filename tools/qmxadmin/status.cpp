#include "tools/qmxadmin/status.h"

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/runs/age.h"
#include "tools/qmxadmin/status_runs.h"

namespace qmx {
namespace {

std::map<std::string, ControlRecord> ControlRecordsOrNone(LocalDatabase& local, AdminStatus& status) {
  try {
    return ReadControlRecords(local);
  } catch (const Error& error) {
    if (error.Number() != errors::kNoSuchTable) throw;
    std::cerr << "There is no table tstables. \"qmxadmin init\" creates it.\n";
    status = AdminStatus::Wrong;
    return {};
  }
}

// Returns null if the rows cannot be counted, and adds the reason to the note.
Variant CountRows(LocalDatabase& local, const std::string& table, std::string& note) {
  try {
    return local.SelectNumber("select count(*) from " + table);
  } catch (const Error& error) {
    note += (note.empty() ? "" : ", ") + (error.Number() == errors::kNoSuchTable ? "no table" : error.Description());
    return Variant::Null();
  }
}

std::vector<Variant> Row(const std::string& table, const ControlRecord* record, Variant rows, std::string note) {
  static const ControlRecord kNone;
  const ControlRecord& known = record ? *record : kNone;
  return {table,
          TextOrNull(std::string(DescriptionOfTable(table))),
          MethodWord(known.byChange),
          known.inProgress,
          known.lastUpdate ? Variant(*known.lastUpdate) : Variant::Null(),
          std::move(rows),
          record != nullptr,
          TextOrNull(note)};
}

}  // namespace

AdminStatus Status(const StatusArguments& arguments) {
  LocalDatabase local(arguments, Purpose::Read);
  const StatusRuns runs(arguments.logs);
  std::optional<std::chrono::seconds> maxAge;
  if (!arguments.maxAge.empty()) maxAge = RequiredAge(arguments.maxAge);
  AdminStatus status = AdminStatus::Done;
  std::map<std::string, ControlRecord> records = ControlRecordsOrNone(local, status);
  Listing listing;
  listing.columns = {{.key = "table", .title = "TABLE"},
                     {.key = "description", .title = "DESCRIPTION", .prose = true, .weight = 1},
                     {.key = "method", .title = "METHOD", .weight = 3},
                     {.key = "in_progress", .title = "IN USE", .weight = 9},
                     {.key = "last_update", .title = "LAST UPDATE", .weight = 7},
                     {.key = "rows", .title = "ROWS", .toTheRight = true, .weight = 4},
                     {.key = "control_record", .title = ""},
                     {.key = "note", .title = "NOTE", .prose = true, .shownEmpty = false, .weight = 8},
                     {.key = "needs_attention", .title = ""}};
  runs.AddColumns(listing);
  for (const LocalTable& table : CopiedTables()) {
    const auto record = records.find(table.name);
    const bool found = record != records.end();
    std::string note = found ? "" : "no record";
    Variant rows = CountRows(local, table.name, note);
    const ControlRecord* const known = found ? &record->second : nullptr;
    const std::vector<std::string> problems = runs.Problems(table.name, known, maxAge);
    const bool isWrong = rows.IsNull() || !problems.empty();
    for (const std::string& problem : problems) note += (note.empty() ? "" : ", ") + problem;
    if (isWrong) status = AdminStatus::Wrong;
    listing.rows.push_back(Row(table.name, known, std::move(rows), note));
    listing.rows.back().emplace_back(isWrong);
    runs.AddValues(table.name, listing.rows.back());
    if (found) records.erase(record);
  }
  // If tstables does not ignore case, a table code in another spelling gets a control record of its own.
  for (const auto& [table, record] : records) {
    listing.rows.push_back(Row(table, &record, Variant::Null(), "not a table code in small letters"));
    listing.rows.back().emplace_back(false);
    runs.AddValues(table, listing.rows.back());
  }
  Print(listing, arguments.form);
  return status;
}

}  // namespace qmx
