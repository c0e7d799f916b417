#include "tools/qmxadmin/verify/verify.h"

#include <fmt/format.h>

#include <iostream>

#include "platform/error.h"
#include "tools/qmxadmin/control_records.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/local_database.h"
#include "tools/qmxadmin/verify/calendars_of_employees.h"
#include "tools/qmxadmin/verify/changed_columns.h"
#include "tools/qmxadmin/verify/comparison.h"
#include "tools/qmxadmin/verify/erp_copy.h"
#include "tools/qmxadmin/verify/report.h"

namespace qmx {
namespace {

constexpr const char* kCalendars = "tcccp030";

void WarnOfCopyInProgress(const std::map<std::string, ControlRecord>& records, const std::string& table) {
  const auto record = records.find(table);
  if (record == records.end() || !record->second.inProgress) return;
  std::cerr << fmt::format(
      "{} is in progress: a copy of it is running or was killed. Its rows may be of different "
      "times.\n",
      table);
}

// Returns whether the table has no difference.
bool VerifyTable(LocalDatabase& local, DriverSession& localRows, const LocalTable& table,
                 const VerifyArguments& arguments, VerifyReport& report) {
  RequireComparable(table, local.Connection().Describe(table.name));
  std::vector<std::string> calendars;
  if (table.name == kCalendars) {
    calendars = CalendarsOfEmployees(local);
    if (calendars.empty() && arguments.all) {
      std::cerr << "tcccp030 was not compared, because no service employee in tsmdm140 has a calendar.\n";
      return true;
    }
    if (calendars.empty()) {
      throw Error(errors::kInvalidCall, "qmxadmin verify",
                  "No service employee in tsmdm140 has a calendar, so there is no calendar to compare.");
    }
  }
  const ErpCopy erp(table, arguments.component, calendars);
  const LocalTable compared = arguments.afterChanged ? WithoutColumnsNotBrought(table) : table;
  report.Begin(compared);
  const ComparedRows rows = Compare(compared, localRows, erp.Rows(), erp.FirstStartDate(), report);
  erp.Rows().Close();
  return report.End(rows);
}

}  // namespace

AdminStatus Verify(const VerifyArguments& arguments) {
  const std::vector<std::string> tables = TablesToWorkOn(arguments.tables, arguments.all);
  LocalDatabase local(arguments, Purpose::Read);
  const std::map<std::string, ControlRecord> records = ReadControlRecords(local);
  const auto localRows = local.OpenSession();
  const auto report = MakeVerifyReport(std::cout, arguments.form, arguments.quiet);
  bool areSame = true;
  for (const std::string& table : tables) {
    WarnOfCopyInProgress(records, table);
    areSame &= VerifyTable(local, *localRows, CopiedTable(table), arguments, *report);
  }
  report->Close();
  localRows->Close();
  return areSame ? AdminStatus::Done : AdminStatus::Wrong;
}

}  // namespace qmx
