#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/calendar/hand_made_year.h"

namespace qmx::test {
namespace {

// One line a day: "2027-01-04 08:00-12:00 12:30-16:30".
std::string ByDay(const std::vector<std::string>& intervals) {
  std::map<std::string, std::multiset<std::string>> days;
  for (const std::string& interval : intervals) {
    const std::size_t arrow = interval.find(" > ");
    const std::string day = interval.substr(0, 10);
    const std::string start = arrow == 10 ? "00:00" : interval.substr(11, 5);
    const bool sameDay = interval.substr(arrow + 3, 10) == day;
    days[day].insert(start + "-" + (sameDay ? interval.substr(arrow + 14, 5) : "24:00"));
  }
  std::string text;
  for (const auto& [day, times] : days) {
    text += day;
    for (const std::string& time : times) text += " " + time;
    text += "\n";
  }
  return text;
}

TEST(ExpansionOfAYear, GivesTheIntervalsOfEachDay) {
  CalendarDatabase local;
  local.Employee("1001", "SHOP");
  local.Records("SHOP", kYearRecords);
  local.Calender().Startprocess();
  EXPECT_EQ(ByDay(local.Intervals("SHOP")), kYearIntervals);
}

}  // namespace
}  // namespace qmx::test
