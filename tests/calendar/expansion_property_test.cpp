// Records that do not overlap: the expansion covers exactly the minutes that they give, each of them once.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "tests/calendar/calendar_database.h"

namespace qmx::test {
namespace {

constexpr int kMinutes = 1440;
using Coverage = std::map<std::string, std::vector<int>>;  // by date: how often each minute of the day is covered

void Cover(Coverage& coverage, const std::string& date, int from, int to) {
  std::vector<int>& minutes = coverage.try_emplace(date, std::vector<int>(kMinutes, 0)).first->second;
  for (int minute = from; minute < to; ++minute) ++minutes[static_cast<std::size_t>(minute)];
}

int Minute(const std::string& moment) {
  return moment.size() == 10 ? 0 : std::stoi(moment.substr(11, 2)) * 60 + std::stoi(moment.substr(14, 2));
}

class RandomCalendar {
 public:
  explicit RandomCalendar(unsigned seed) : random_(seed) {}

  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

  // Blocks of days, one after the other; each day of a block has the same intervals, which may touch.
  Coverage Fill(CalendarDatabase& local, const std::string& ccal, int blocks) {
    Coverage given;
    DateTime day = DateTime::FromDate(Number(1995, 2030), Number(1, 12), Number(1, 31));
    for (int block = 0; block < blocks; ++block) {
      const int days = Number(1, 12);
      const DateTime last = day.PlusDays(days - 1);
      for (int minute = Number(0, 300); minute < kMinutes;) {
        const int end = std::min(minute + Number(1, 600), kMinutes);
        const std::string first = day.ToText();
        const std::string until = last.ToText();
        local.Record(ccal, {first.c_str(), until.c_str(), minute / 60 * 100 + minute % 60, end / 60 * 100 + end % 60});
        for (int i = 0; i < days; ++i) Cover(given, day.PlusDays(i).ToText(), minute, end);
        minute = end + (Number(0, 2) == 0 ? 0 : Number(1, 400));
      }
      day = last.PlusDays(Number(1, 60));
    }
    return given;
  }

 private:
  std::mt19937 random_;
};

TEST(ExpansionProperty, CoversExactlyTheMinutesOfRecordsThatDoNotOverlap) {
  RandomCalendar random(20261120);
  CalendarDatabase local({}, {}, Calls::NotLogged);
  std::map<std::string, Coverage> given;
  for (int calendar = 0; calendar < 20; ++calendar) {
    const std::string ccal = "C" + std::to_string(calendar);
    local.Employee(ccal, ccal);
    given[ccal] = random.Fill(local, ccal, 25);
  }
  local.Calender().Startprocess();

  for (const auto& [ccal, minutes] : given) {
    Coverage expanded;
    for (const std::string& interval : local.Intervals(ccal)) {
      const std::size_t arrow = interval.find(" > ");
      const std::string start = interval.substr(0, arrow);
      const std::string end = interval.substr(arrow + 3);
      const bool untilMidnight = end.substr(0, 10) != start.substr(0, 10);
      if (untilMidnight) {
        EXPECT_EQ(end, DateTime::Parse(start)->DatePart().PlusDays(1).ToText());
      }
      Cover(expanded, start.substr(0, 10), Minute(start), untilMidnight ? kMinutes : Minute(end));
    }
    EXPECT_GT(minutes.size(), 50u);
    EXPECT_EQ(expanded, minutes) << ccal;
  }
}

}  // namespace
}  // namespace qmx::test
