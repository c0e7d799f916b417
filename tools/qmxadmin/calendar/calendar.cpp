#include "tools/qmxadmin/calendar/calendar.h"

#include <fmt/format.h>

#include <iostream>

#include "platform/error.h"
#include "platform/system/clock.h"
#include "platform/system/descriptors.h"
#include "platform/trim.h"
#include "tools/qmxadmin/calendar/picture.h"
#include "tools/qmxadmin/calendar/svg.h"
#include "tools/qmxadmin/local_database.h"
#include "tools/qmxadmin/runs/output_file.h"
#include "tools/qmxadmin/terminal.h"

namespace qmx {
namespace {

constexpr int kWeeks = 4;  // the default
constexpr int kMostWeeks = 520;
constexpr int kColumnsOfAFile = 120;

struct Period {
  DateTime from;
  DateTime to;
};

[[noreturn]] void Refuse(const std::string& why) { throw Error(errors::kInvalidCall, "qmxadmin calendar", why); }

DateTime DayOf(const std::string& text) {
  const std::optional<DateTime> day = DateTime::Parse(text);
  if (day && day->ToText() == text) return *day;
  Refuse(fmt::format("\"{}\" is not a date of the form YYYY-MM-DD.", text));
}

Period PeriodOf(const CalendarArguments& arguments) {
  const int days = kWeeks * 7 - 1;
  Period period;
  if (!arguments.from.empty()) {
    period.from = DayOf(arguments.from);
    period.to = arguments.to.empty() ? period.from.PlusDays(days) : DayOf(arguments.to);
  } else {
    period.to = arguments.to.empty() ? MondayOf(SystemClock().Now()).PlusDays(days) : DayOf(arguments.to);
    period.from = period.to.PlusDays(-days);
  }
  if (period.to < period.from)
    Refuse(fmt::format("The last day, {}, is before the first day, {}.", arguments.to, arguments.from));
  if (period.to > period.from.PlusDays(kMostWeeks * 7)) Refuse("A picture shows at most ten years.");
  return period;
}

// Returns the first two columns of every row.
std::vector<std::vector<Variant>> RowsOf(LocalDatabase& local, const SqlText& query) {
  const auto records = local.Select(query);
  std::vector<std::vector<Variant>> rows;
  for (; !records->Eof(); records->MoveNext()) {
    rows.push_back({records->Fields(std::size_t{0}).Value(), records->Fields(std::size_t{1}).Value()});
  }
  records->Close();
  return rows;
}

void RequireIntervals(LocalDatabase& local, const std::string& code) {
  const SqlText count = SqlText("select count(*) from tscalender where ccal = '").Value(code).Append("'");
  if (local.SelectNumber(count) > 0) return;
  Refuse(fmt::format(
      "There is no calendar \"{}\" in tscalender. \"qmxadmin expand\" fills it from the service employees' calendars.",
      code));
}

CalendarPicture PictureOf(LocalDatabase& local, const std::string& code, const Period& period) {
  RequireIntervals(local, code);
  const std::string first = MondayOf(period.from).ToText();
  const std::string end = MondayOf(period.to).PlusDays(7).ToText();
  std::vector<Interval> intervals;
  const auto rows = RowsOf(local, SqlText("select sttm, entm from tscalender where ccal = '")
                                      .Value(code)
                                      .Append("' and sttm < '")
                                      .Value(end)
                                      .Append("' and (sttm >= '")
                                      .Value(first)
                                      .Append("' or entm > '")
                                      .Value(first)
                                      .Append("')"));
  for (const auto& row : rows) {
    if (!row[0].IsNull() && !row[1].IsNull()) intervals.push_back({row[0].ToDateTime(), row[1].ToDateTime()});
  }
  return {code, "", "", WeeksOf(std::move(intervals), period.from, period.to)};
}

CalendarPicture PictureOfEmployee(LocalDatabase& local, const std::string& number, const Period& period) {
  const auto rows = RowsOf(local, SqlText("select ccal, dsca from tsmdm140 where emno = '").Value(number).Append("'"));
  if (rows.empty()) Refuse(fmt::format("There is no service employee \"{}\" in tsmdm140.", number));
  const std::string code(Trimmed(rows[0][0].ToText()));
  if (code.empty()) Refuse(fmt::format("The service employee \"{}\" has no calendar.", number));
  CalendarPicture picture = PictureOf(local, code, period);
  picture.employee = number;
  picture.name = rows[0][1].ToText();
  return picture;
}

Listing ListingOf(const std::vector<CalendarPicture>& pictures) {
  Listing listing{{{"calendar", "CALENDAR"}, {"employee", "EMPLOYEE"}, {"from", "FROM"}, {"to", "TO"}}, {}};
  for (const CalendarPicture& picture : pictures) {
    const Variant employee = TextOrNull(picture.employee);
    for (const Interval& interval : picture.weeks.intervals) {
      listing.rows.push_back({picture.code, employee, interval.from, interval.to});
    }
  }
  return listing;
}

}  // namespace

AdminStatus ShowCalendars(const CalendarArguments& arguments) {
  if (arguments.codes.empty() && arguments.employee.empty()) Refuse("Name a calendar or give --employee.");
  const Period period = PeriodOf(arguments);
  LocalDatabase local(arguments, Purpose::Read);
  std::vector<CalendarPicture> pictures;
  for (const std::string& code : arguments.codes) pictures.push_back(PictureOf(local, code, period));
  if (!arguments.employee.empty()) pictures.push_back(PictureOfEmployee(local, arguments.employee, period));

  if (!arguments.svg.empty()) {
    WriteOutputFile(arguments.svg, SvgPicture(pictures));
  } else if (arguments.form == OutputForm::Json) {
    Print(ListingOf(pictures), OutputForm::Json);
  } else {
    const int columns = TerminalOf(kStandardOutput).width.value_or(kColumnsOfAFile);
    for (const CalendarPicture& picture : pictures) {
      std::cout << (&picture == &pictures.front() ? "" : "\n") << TerminalPicture(picture, columns);
    }
  }
  return AdminStatus::Done;
}

}  // namespace qmx
