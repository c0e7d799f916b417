#include "platform/system/clock.h"

#include <gmock/gmock.h>

namespace qmx::test {
namespace {

const DateTime kMoment = DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9);

TEST(Clock, ShowsDatesAndTimesInTheShortFormsOfALocale) {
  SystemClock american("en-US");
  EXPECT_EQ(american.DateText(kMoment), "11/20/2026");
  EXPECT_EQ(american.TimeText(kMoment), "2:05:09 PM");
  SystemClock german("de-DE");
  EXPECT_EQ(german.DateText(kMoment), "20.11.2026");
  EXPECT_EQ(german.TimeText(kMoment), "14:05:09");
}

TEST(Clock, ShowsTheIsoFormsWithoutALocaleAndWithAnUnknownOne) {
  for (const char* name : {"", "xx-NOWHERE-xx-xx-xx"}) {
    SystemClock clock(name);
    EXPECT_EQ(clock.DateText(kMoment), "2026-11-20") << name;
    EXPECT_EQ(clock.TimeText(kMoment), "14:05:09") << name;
  }
}

TEST(Clock, ShowsYearsThatWindowsDoesNotKnowInTheIsoForm) {
  SystemClock clock("en-US");
  EXPECT_EQ(clock.DateText(DateTime::FromDate(1500, 2, 3)), "1500-02-03");
}

TEST(Clock, ReadsTheLocalTimeOfTheMachine) {
  const std::time_t before = std::time(nullptr);
  const DateTime now = SystemClock().Now();
  const std::time_t after = std::time(nullptr);
  EXPECT_GE(now.Seconds(), LocalTime(before).Seconds());
  EXPECT_LE(now.Seconds(), LocalTime(after).Seconds());
}

TEST(Clock, TellsLocalTimeByTheOffsetFromUtc) {
  const std::time_t moment = 1'763'640'309;  // 2025-11-20 12:05:09 UTC
  const DateTime utc = DateTime::FromDate(2025, 11, 20).PlusTime(12, 5, 9);
  EXPECT_EQ(LocalTime(moment).Seconds() - OffsetFromUtc(moment), utc.Seconds());
}

}  // namespace
}  // namespace qmx::test
