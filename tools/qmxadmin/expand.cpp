#include "tools/qmxadmin/expand.h"

#include <fmt/format.h>

#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "calendar/clsCalender.h"
#include "platform/error.h"
#include "platform/interruption.h"
#include "platform/system/environment.h"
#include "platform/system/interrupt_signals.h"
#include "tools/qmxadmin/local_database.h"

namespace qmx {
namespace {

std::map<std::string, std::int32_t> IntervalsByCalendar(LocalDatabase& local) {
  const auto rows = local.Select("select ccal, count(*) from tscalender group by ccal");
  std::map<std::string, std::int32_t> counts;
  for (; !rows->Eof(); rows->MoveNext()) {
    counts[rows->Fields(std::size_t{0}).Value().ToText()] = rows->Fields(std::size_t{1}).Value().ToInt32();
  }
  rows->Close();
  return counts;
}

void PrintLines(const std::vector<std::string>& inUse, std::map<std::string, std::int32_t> counts) {
  for (const std::string& code : inUse) {
    std::cout << fmt::format("{}: {} intervals\n", code, counts[code]);
    counts.erase(code);
  }
  for (const auto& [code, count] : counts) {
    std::cout << fmt::format("{}: {} intervals, unchanged: no service employee has this calendar\n", code, count);
  }
}

void PrintJson(const std::vector<std::string>& inUse, std::map<std::string, std::int32_t> counts) {
  Listing listing{{{.key = "calendar"}, {.key = "intervals"}, {.key = "expanded"}}, {}};
  for (const std::string& code : inUse) {
    listing.rows.push_back({code, counts[code], true});
    counts.erase(code);
  }
  for (const auto& [code, count] : counts) listing.rows.push_back({code, count, false});
  Print(listing, OutputForm::Json);
}

void Report(const std::vector<std::string>& inUse, const std::map<std::string, std::int32_t>& counts,
            const ExpandArguments& arguments) {
  if (arguments.form == OutputForm::Json) return PrintJson(inUse, counts);
  if (inUse.empty()) std::cout << "No service employee has a calendar, so nothing was expanded.\n";
  if (!arguments.quiet) PrintLines(inUse, counts);
}

bool IsWhole(const ExpandArguments& arguments) {
  const std::string mode = EnvironmentVariable("QMX_COPY").value_or("");
  if (mode.empty() || mode == "whole") return arguments.whole || !mode.empty();
  throw Error(errors::kInvalidCall, "qmxadmin expand",
              fmt::format("QMX_COPY is \"{}\". It may be \"whole\" or empty.", mode));
}

void RaiseIfInterrupted(const clsCalender& calender, int expanded) {
  try {
    Interruption::RaiseIfRequested();
  } catch (Error& error) {
    error.With("expanded", fmt::format("{} of {} calendars, not {} and those after it; expand again", expanded,
                                       calender.calcount, calender.Calcode));
    throw;
  }
}

}  // namespace

AdminStatus Expand(const ExpandArguments& arguments) {
  const bool isWhole = IsWhole(arguments);
  LocalDatabase local(arguments, Purpose::Write);
  Connection& connection = local.Connection();

  // The expansion skips what it cannot read or write. Without this check a missing table would look like a database
  // without calendars.
  for (const char* table : {"tsmdm140", "tcccp030", "tscalender"}) connection.Describe(table);

  if (isWhole) connection.PrepareAtomic({"tscalender"});

  const auto records = local.NewRecordset();
  clsCalender calender(local.Layer());
  calender.DBConnection = &connection;
  calender.DBRecordSet = records.get();
  const InterruptSignals signals("the expansion ends before the next calendar. A second signal ends it at once.");
  calender.BeforeCalendar = [&calender, expanded = 0]() mutable {
    RaiseIfInterrupted(calender, expanded);
    ++expanded;
  };
  AdminStatus status = AdminStatus::Done;
  if (isWhole) {
    calender.CalendarFailed = [&](const Error& failure) {
      std::cerr << fmt::format("{}: not expanded, its intervals are as before.\n{}\n", calender.Calcode,
                               DescribeChain(failure));
      status = AdminStatus::Wrong;
    };
  }
  calender.Startprocess();

  std::vector<std::string> inUse;
  calender.getEmployeeCalenderList(connection, inUse);
  Report(inUse, IntervalsByCalendar(local), arguments);
  connection.Close();
  return status;
}

}  // namespace qmx
