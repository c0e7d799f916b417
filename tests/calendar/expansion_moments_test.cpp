// The expansion over start dates in the form of SQLite's datetime(), and over those of older releases, which have no
// time of day.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/calendar/calendar_database.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

class ExpansionMoments : public testing::TestWithParam<const char*> {
 protected:
  // The start date has the form of the test's parameter: what follows the day.
  void Record(const std::string& start, int from, int to) {
    const std::string date = start + GetParam();
    local_.Record("DAY", {date.c_str(), date.c_str(), from, to});
  }

  std::vector<std::string> Expanded() {
    local_.Employee("1001", "DAY");
    local_.Calender().Startprocess();
    return local_.Intervals("DAY");
  }

  // Letter by letter.
  std::vector<std::string> Stored() {
    Recordset rows(nullptr);
    rows.Open("select sttm||' > '||entm from tscalender order by rowid", local_.connection(), kCursorKeyset,
              kLockOptimistic, kCommandText);
    std::vector<std::string> stored;
    for (; !rows.Eof(); rows.MoveNext()) stored.push_back(rows.Fields(std::size_t{0}).Value().ToText());
    return stored;
  }

  CalendarDatabase local_;
};
INSTANTIATE_TEST_SUITE_P(Of, ExpansionMoments, testing::Values(" 00:00:00", ""),
                         [](const auto& info) { return *info.param != '\0' ? "ThisRelease" : "AnOlderOne"; });

// Periods: after 2001-01-09 to 2001-04-19, then to 2001-07-28. Touching intervals are joined within a period only.
TEST_P(ExpansionMoments, TakesTheLastDayOfAPeriodIntoItAndNotIntoTheNext) {
  Record("2001-01-10", 800, 1200);
  Record("2001-04-19", 800, 1200);
  Record("2001-04-19", 1200, 1700);
  Record("2001-04-20", 800, 900);
  EXPECT_THAT(Expanded(),
              ElementsAre("2001-01-10 08:00:00 > 2001-01-10 12:00:00", "2001-04-19 08:00:00 > 2001-04-19 17:00:00",
                          "2001-04-20 08:00:00 > 2001-04-20 09:00:00"));
}

TEST_P(ExpansionMoments, EndsAfterAPeriodWithoutRecordsEvenIfOneStartsOnItsEndDate) {
  Record("2001-01-10", 800, 1200);
  Record("2001-07-29", 800, 1200);
  EXPECT_THAT(Expanded(), ElementsAre("2001-01-10 08:00:00 > 2001-01-10 12:00:00"));
}

TEST_P(ExpansionMoments, GoesOnWithARecordOnTheLastDayOfTheNextPeriod) {
  Record("2001-01-10", 800, 1200);
  Record("2001-07-28", 800, 1200);
  EXPECT_THAT(Expanded(),
              ElementsAre("2001-01-10 08:00:00 > 2001-01-10 12:00:00", "2001-07-28 08:00:00 > 2001-07-28 12:00:00"));
}

// In the other order the first interval would stay beside the second.
TEST_P(ExpansionMoments, ReadsTheRecordsOfADayByTheirStartTimes) {
  Record("2001-01-10", 800, 1200);
  Record("2001-01-10", 700, 1000);
  EXPECT_THAT(Expanded(), ElementsAre("2001-01-10 07:00:00 > 2001-01-10 12:00:00"));
}

TEST_P(ExpansionMoments, StoresIntervalsInFull) {
  Record("2001-01-10", 0, 2400);
  Expanded();
  EXPECT_THAT(Stored(), ElementsAre("2001-01-10 00:00:00 > 2001-01-11 00:00:00"));
}

}  // namespace
}  // namespace qmx::test
