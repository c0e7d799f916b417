#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "tests/calendar/calendar_database.h"
#include "tests/calendar/hand_made_year.h"

namespace qmx::test {
namespace {

// One line of the year: "2027-01-04..2027-01-07 08:00-12:00 12:30-16:30".
struct Days {
  std::string first;
  std::string last;
  std::vector<std::string> times;
};

std::vector<Days> Parsed(const std::string& text) {
  std::vector<Days> all;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string dates;
    words >> dates;
    Days days = {dates.substr(0, 10), dates.substr(dates.size() - 10), {}};
    for (std::string time; words >> time;) days.times.push_back(time);
    all.push_back(days);
  }
  return all;
}

int Time(const std::string& text) { return std::stoi(text.substr(0, 2)) * 100 + std::stoi(text.substr(3, 2)); }

// One line a day: "2027-01-04 08:00-12:00 12:30-16:30".
std::string ByDay(const std::vector<Days>& year) {
  std::string text;
  for (const Days& days : year) {
    for (DateTime day = *DateTime::Parse(days.first); day <= *DateTime::Parse(days.last); day = day.PlusDays(1)) {
      text += day.ToText();
      for (const std::string& time : days.times) text += " " + time;
      text += "\n";
    }
  }
  return text;
}

std::string ByDay(const std::vector<std::string>& intervals) {
  std::map<std::string, std::multiset<std::string>> days;
  for (const std::string& interval : intervals) {
    const std::size_t arrow = interval.find(" > ");
    const std::string day = interval.substr(0, 10);
    const std::string start = arrow == 10 ? "00:00" : interval.substr(11, 5);
    const bool sameDay = interval.substr(arrow + 3, 10) == day;
    days[day].insert(start + "-" + (sameDay ? interval.substr(arrow + 14, 5) : "24:00"));
  }
  std::vector<Days> year;
  for (const auto& [day, times] : days) year.push_back({day, day, {times.begin(), times.end()}});
  return ByDay(year);
}

TEST(ExpansionOfAYear, GivesTheIntervalsOfEachDay) {
  CalendarDatabase local;
  local.Employee("1001", "SHOP");
  int records = 0;
  for (const Days& days : Parsed(kYearRecords)) {
    for (const std::string& time : days.times) {
      local.Record("SHOP", {days.first.c_str(), days.last.c_str(), Time(time.substr(0, 5)), Time(time.substr(6))});
      ++records;
    }
  }
  EXPECT_EQ(records, 217);
  local.Calender().Startprocess();
  EXPECT_EQ(ByDay(local.Intervals("SHOP")), ByDay(Parsed(kYearIntervals)));
}

}  // namespace
}  // namespace qmx::test
