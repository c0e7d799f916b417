// Civil time as the sandbox reckons with it.
#include "sandbox/binding/moment.h"

#include <gtest/gtest.h>

#include "sandbox/tool/dates.h"

namespace orvan {
namespace {

TEST(Moment, CountsSecondsFromTheInterfacesDayZero) {
  EXPECT_EQ(0, (Moment{1899, 12, 30}.Seconds()));
  EXPECT_EQ(-86400, (Moment{1899, 12, 29}.Seconds()));
  EXPECT_EQ(86400 + 3600 + 61, (Moment{1899, 12, 31, 1, 1, 1}.Seconds()));
  EXPECT_EQ((Moment{1899, 12, 29, 23, 59, 59}), Moment::FromSeconds(-1));
  EXPECT_EQ((Moment{2026, 11, 20, 14, 5, 9}), Moment::FromSeconds(46346LL * 86400 + 14 * 3600 + 5 * 60 + 9));
}

TEST(Moment, ReadsDatesWithAndWithoutLeadingZeros) {
  EXPECT_EQ((Moment{2026, 1, 5, 0, 0, 0}), *Moment::Parse("2026-1-5"));
  EXPECT_EQ((Moment{2026, 1, 5, 0, 0, 0}), *Moment::Parse("2026-01-05"));
  EXPECT_EQ((Moment{2026, 1, 5, 7, 30, 9}), *Moment::Parse("2026-1-5 7:30:9"));
  EXPECT_EQ((Moment{2026, 1, 5, 7, 30, 0}), *Moment::Parse("2026-01-05T07:30"));
}

TEST(Moment, CarriesDaysThatTheMonthDoesNotHave) {
  EXPECT_EQ("2038-03-01", Moment::Parse("2038-02-29")->DateText());
  EXPECT_EQ("2024-02-29", Moment::Parse("2024-02-29")->DateText());
  EXPECT_EQ("2026-12-01", Moment::Parse("2026-11-31")->DateText());
  EXPECT_EQ("2027-01-01 00:00:00", Moment::Parse("2026-12-31 24:00:00")->Text());
}

TEST(Moment, ReadsNothingElse) {
  for (const char* text :
       {"", "2026", "2026-11", "2026-13-01", "2026-00-01", "2026-11-0", "2026-11-32", "20.11.2026", "2026-11-20 ",
        "2026-11-20 25:00", "2026-11-20 10:60", "2026-11-20 10:00:60", "2026-11-20x", " 2026-11-20", "-2026-11-20"})
    EXPECT_FALSE(Moment::Parse(text)) << text;
}

TEST(Dates, KnowTheDaysOfTheWeek) {
  EXPECT_EQ(4, Weekday({2026, 11, 20, 23, 59, 59}));
  EXPECT_EQ(0, Weekday({2026, 11, 23}));
  EXPECT_EQ(5, Weekday({1899, 12, 30}));
  EXPECT_TRUE(IsWorkday({2026, 11, 20}));
  EXPECT_FALSE(IsWorkday({2026, 11, 21}));
}

TEST(Dates, FindTheNightsInWhichClocksAreChanged) {
  EXPECT_EQ("2026-03-29", ClockChange(2026, 3).DateText());
  EXPECT_EQ("2026-10-25", ClockChange(2026, 10).DateText());
  EXPECT_EQ("2027-10-31", ClockChange(2027, 10).DateText());
}

TEST(Dates, GoForwardAndBack) {
  EXPECT_EQ("2027-01-01 00:10:00", Later({2026, 12, 31, 23, 50, 0}, 0, 20).Text());
  EXPECT_EQ("2026-02-28 08:00:00", Later({2026, 3, 1, 8, 0, 0}, -1).Text());
}

}  // namespace
}  // namespace orvan
