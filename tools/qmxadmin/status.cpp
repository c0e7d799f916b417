#include "tools/qmxadmin/status.h"

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"

namespace qmx {
namespace {

std::map<std::string, ControlRecord> ControlRecordsOrNone(LocalDatabase& local) {
  try {
    return ReadControlRecords(local);
  } catch (const Error& error) {
    if (error.Number() != errors::kNoSuchTable) throw;
    std::cerr << "There is no table tstables: \"qmxadmin init\" makes it.\n";
    return {};
  }
}

// What stands in the table's place where it cannot be counted is added to the note.
Variant CountRows(LocalDatabase& local, const std::string& table, std::string& note) {
  try {
    const auto rows = local.Layer().CreateRecordset("ADODB.Recordset");
    rows->Open("select count(*) from " + table, local.Connection(), kCursorKeyset, kLockOptimistic, kCommandText);
    return rows->Fields(std::size_t{0}).Value().ToDouble();
  } catch (const Error& error) {
    note += (note.empty() ? "" : ", ") + (error.Number() == errors::kNoSuchTable ? "no table" : error.Description());
    return Variant::Null();
  }
}

Variant OrNull(const std::string& text) { return text.empty() ? Variant::Null() : text; }

std::vector<Variant> Row(const std::string& table, const ControlRecord* record, Variant rows, std::string note) {
  static const ControlRecord kNone;
  const ControlRecord& known = record ? *record : kNone;
  return {table,
          OrNull(std::string(DescriptionOfTable(table))),
          known.byChange ? "changed" : "full",
          known.inProgress,
          known.lastUpdate ? Variant(*known.lastUpdate) : Variant::Null(),
          std::move(rows),
          record != nullptr,
          OrNull(note)};
}

}  // namespace

AdminStatus Status(const StatusArguments& arguments) {
  LocalDatabase local(arguments);
  std::map<std::string, ControlRecord> records = ControlRecordsOrNone(local);
  Listing listing;
  listing.columns = {{.key = "table", .title = "TABLE"},
                     {.key = "description", .title = "DESCRIPTION", .prose = true},
                     {.key = "method", .title = "METHOD"},
                     {.key = "in_progress", .title = "IN USE"},
                     {.key = "last_update", .title = "LAST UPDATE"},
                     {.key = "rows", .title = "ROWS", .toTheRight = true},
                     {.key = "control_record", .title = ""},
                     {.key = "note", .title = "NOTE", .prose = true, .shownEmpty = false}};
  for (const LocalTable& table : CopiedTables()) {
    const auto record = records.find(table.name);
    const bool found = record != records.end();
    std::string note = found ? "" : "no record";
    Variant rows = CountRows(local, table.name, note);
    listing.rows.push_back(Row(table.name, found ? &record->second : nullptr, std::move(rows), note));
    if (found) records.erase(record);
  }
  // A table code in another spelling gets a control record of its own where tstables does not ignore case.
  for (const auto& [table, record] : records) {
    listing.rows.push_back(Row(table, &record, Variant::Null(), "not a table's code, or not in small letters"));
  }
  Print(listing, arguments.form);
  return AdminStatus::Done;
}

}  // namespace qmx
