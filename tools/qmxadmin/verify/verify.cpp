#include "tools/qmxadmin/verify/verify.h"

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/local_database.h"
#include "tools/qmxadmin/verify/comparison.h"
#include "tools/qmxadmin/verify/erp_copy.h"
#include "tools/qmxadmin/verify/report.h"

namespace qmx {
namespace {

constexpr const char* kCalendars = "tcccp030";

const LocalTable& CopiedTable(const std::string& code) {
  RequireCopiedTable(code);
  for (const LocalTable& table : CopiedTables()) {
    if (table.name == code) return table;
  }
  throw Error(errors::kInternal, "qmxadmin verify", "There is no table " + code + ".");
}

std::vector<std::string> CalendarsOfEmployees(LocalDatabase& local) {
  const auto records = local.Layer().CreateRecordset("ADODB.Recordset");
  records->Open("select distinct ccal from tsmdm140 where ccal <> ''", local.Connection(), kCursorKeyset,
                kLockOptimistic, kCommandText);
  std::vector<std::string> calendars;
  for (; !records->Eof(); records->MoveNext()) calendars.push_back(records->Fields(std::size_t{0}).Value().ToText());
  records->Close();
  return calendars;
}

void WarnOfCopyInProgress(const std::map<std::string, ControlRecord>& records, const std::string& table) {
  const auto record = records.find(table);
  if (record == records.end() || !record->second.inProgress) return;
  std::cerr << table << " is in progress: a copy of it runs, or was killed; its rows may be of different times.\n";
}

bool VerifyTable(LocalDatabase& local, DriverSession& localRows, const LocalTable& table, const std::string& component,
                 VerifyReport& report) {
  RequireComparable(table, local.Connection().Describe(table.name));
  std::vector<std::string> calendars;
  if (table.name == kCalendars) {
    calendars = CalendarsOfEmployees(local);
    if (calendars.empty()) {
      throw Error(errors::kInvalidCall, "qmxadmin verify",
                  "No service employee in tsmdm140 has a calendar, so no calendar is listed.");
    }
  }
  const ErpCopy erp(table, component, calendars);
  report.Begin(table);
  const ComparedRows rows = Compare(table, localRows, erp.Rows(), erp.FirstStartDate(), report);
  erp.Rows().Close();
  return report.End(rows);
}

}  // namespace

AdminStatus Verify(const VerifyArguments& arguments) {
  for (const std::string& table : arguments.tables) CopiedTable(table);
  LocalDatabase local(arguments);
  const std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  SqliteDriver sqlite;
  OdbcDriver odbc;
  const auto localRows = OpenSession({&sqlite, &odbc}, arguments);  // keys may hold any text
  const auto report = MakeVerifyReport(std::cout, arguments.form);
  bool areSame = true;
  for (const std::string& table : arguments.tables) {
    WarnOfCopyInProgress(records, table);
    areSame &= VerifyTable(local, *localRows, CopiedTable(table), arguments.component, *report);
  }
  report->Close();
  localRows->Close();
  return areSame ? AdminStatus::Done : AdminStatus::Wrong;
}

}  // namespace qmx
