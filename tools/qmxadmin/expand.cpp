#include "tools/qmxadmin/expand.h"

#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "calendar/clsCalender.h"
#include "platform/error.h"
#include "platform/interruption.h"
#include "platform/posix/interrupt_signals.h"
#include "tools/qmxadmin/local_database.h"

namespace qmx {
namespace {

std::map<std::string, std::int32_t> IntervalsByCalendar(Database& database, Connection& connection) {
  const auto rows = database.CreateRecordset("ADODB.Recordset");
  rows->Open("select ccal, count(*) from tscalender group by ccal", connection, kCursorKeyset, kLockOptimistic,
             kCommandText);
  std::map<std::string, std::int32_t> counts;
  for (; !rows->Eof(); rows->MoveNext()) {
    counts[rows->Fields(std::size_t{0}).Value().ToText()] = rows->Fields(std::size_t{1}).Value().ToInt32();
  }
  rows->Close();
  return counts;
}

void Report(const std::vector<std::string>& inUse, std::map<std::string, std::int32_t> counts) {
  if (inUse.empty()) std::cout << "No service employee has a calendar: nothing was expanded.\n";
  for (const std::string& code : inUse) {
    std::cout << code << ": " << counts[code] << " intervals\n";
    counts.erase(code);
  }
  for (const auto& [code, count] : counts) {
    std::cout << code << ": " << count << " intervals, left as they were: no service employee has this calendar\n";
  }
}

void LookForAnInterruption(const clsCalender& calender, int expanded) {
  try {
    Interruption::RaiseIfRequested();
  } catch (Error& error) {
    error.With("expanded", std::to_string(expanded) + " of " + std::to_string(calender.calcount) + " calendars, not " +
                               calender.Calcode + " and those after it; expand again");
    throw;
  }
}

}  // namespace

AdminStatus Expand(const DatabaseArguments& arguments) {
  LocalDatabase local(arguments);
  Connection& connection = local.Connection();

  // The expansion passes over what it cannot read or write; a table that is missing should not look like no calendars.
  for (const char* table : {"tsmdm140", "tcccp030", "tscalender"}) connection.Describe(table);

  const auto records = local.Layer().CreateRecordset("ADODB.Recordset");
  clsCalender calender(local.Layer());
  calender.DBConnection = &connection;
  calender.DBRecordSet = records.get();
  const InterruptSignals signals("the expansion ends before the next calendar. A second signal ends it at once.");
  calender.BeforeCalendar = [&calender, expanded = 0]() mutable {
    LookForAnInterruption(calender, expanded);
    ++expanded;
  };
  calender.Startprocess();

  std::vector<std::string> inUse;
  calender.getEmployeeCalenderList(connection, inUse);
  Report(inUse, IntervalsByCalendar(local.Layer(), connection));
  connection.Close();
  return AdminStatus::Done;
}

}  // namespace qmx
