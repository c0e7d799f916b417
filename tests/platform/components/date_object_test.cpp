#include "platform/components/date_object.h"

#include <gtest/gtest.h>

#include "platform/components/installed_components.h"
#include "tests/support/fake_clock.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

class ADateObject : public testing::Test {
 protected:
  // "year month day hour:minute:second" as the getters give them.
  std::string Read() {
    const auto part = [&](const Member& getter) { return date.Call(getter).ToText(); };
    return part("getYear") + " " + part("getMonth") + " " + part("getDate") + " " + part("getHours") + ":" +
           part("getMinutes") + ":" + part("getSeconds");
  }
  template <typename... Arguments>
  std::int32_t NumberOf(const Member& member, Arguments&&... arguments) {
    const Error error = Raised([&] { date.Call(member, arguments...); });
    EXPECT_EQ(error.Details()[1], (Error::Detail{"progid", "java:java.util.Date"}));
    return error.Number();
  }

  FakeClock clock;  // 2026-11-20 14:05:09
  InstalledComponents components{clock, {}};
  Object date = components.CreateObject("java:java.util.Date");
};

TEST_F(ADateObject, StartsAtTheCurrentTime) { EXPECT_EQ(Read(), "126 10 20 14:5:9"); }

TEST_F(ADateObject, IsMadeFromItsProgIdInAnyCase) {
  EXPECT_EQ(components.CreateObject("JAVA:JAVA.UTIL.DATE").Call("getYear"), Variant(126));
}

TEST_F(ADateObject, GivesThirtyTwoBitIntegers) {
  EXPECT_EQ(date.Call("getyear"), Variant(std::int32_t{126}));
  EXPECT_EQ(date.Call("getDate"), Variant(std::int32_t{20}));
}

TEST_F(ADateObject, ResolvesNamesWithoutRegardToCase) {
  date.Call("setmonth", 0);
  EXPECT_EQ(date.Call("GETMONTH"), Variant(0));
  EXPECT_EQ(date.Call("getmonth"), Variant(0));
}

TEST_F(ADateObject, KeepsADayUntilMonthAndYearAreSet) {
  date.Call("setDate", 31);
  date.Call("setmonth", 0);
  date.Call("setYear", 126);
  EXPECT_EQ(Read(), "126 0 31 14:5:9");
}

TEST_F(ADateObject, ResolvesADayBeyondItsMonthWhenItIsRead) {
  date.Call("setDate", 31);
  EXPECT_EQ(date.Call("getMonth"), Variant(11));  // 31 November
  date.Call("setmonth", 0);
  EXPECT_EQ(Read(), "126 0 1 14:5:9");
}

TEST_F(ADateObject, HoldsTheBeginningOfTimeIfThereWasNone) {
  date.Call("setDate", 1);
  date.Call("setmonth", 0);
  date.Call("setYear", 70);
  EXPECT_EQ(Read(), "70 0 1 14:5:9");
}

TEST_F(ADateObject, CarriesHoursMinutesAndSeconds) {
  date.Call("setHours", 23);
  date.Call("setMinutes", 59);
  date.Call("setSeconds", 60);
  EXPECT_EQ(Read(), "126 10 21 0:0:0");
  date.Call("setHours", -1);
  EXPECT_EQ(Read(), "126 10 20 23:0:0");
}

TEST_F(ADateObject, CarriesMonthsIntoTheYearAtOnce) {
  date.Call("setmonth", 14);
  date.Call("setmonth", 1);
  EXPECT_EQ(Read(), "127 1 20 14:5:9");
  date.Call("setmonth", -1);
  EXPECT_EQ(Read(), "126 11 20 14:5:9");
}

TEST_F(ADateObject, TakesDayZeroAsTheLastOfTheMonthBefore) {
  date.Call("setDate", 0);
  date.Call("setmonth", 2);
  EXPECT_EQ(Read(), "126 1 28 14:5:9");
}

TEST_F(ADateObject, KnowsLeapYears) {
  date.Call("setDate", 29);
  date.Call("setmonth", 1);
  date.Call("setYear", 128);
  EXPECT_EQ(Read(), "128 1 29 14:5:9");
  date.Call("setYear", 200);  // 2100 has none
  EXPECT_EQ(Read(), "200 2 1 14:5:9");
}

TEST_F(ADateObject, ConvertsWhatASetterIsGiven) {
  date.Call("setDate", std::int16_t{7});
  date.Call("setmonth", 2.5);
  date.Call("setYear", "99");
  EXPECT_EQ(Read(), "99 2 7 14:5:9");
}

TEST_F(ADateObject, RefusesWhatItDoesNotHave) {
  EXPECT_EQ(NumberOf("getTime"), 438);
  EXPECT_EQ(NumberOf("setDate"), 450);
  EXPECT_EQ(NumberOf("setDate", 1, 2), 450);
  EXPECT_EQ(NumberOf("getDate", 1), 450);
  EXPECT_EQ(NumberOf("setDate", "the first"), 13);
  EXPECT_EQ(NumberOf("setDate", Variant::Null()), 94);
  EXPECT_EQ(NumberOf("setDate", 3e9), 6);
  EXPECT_EQ(Read(), "126 10 20 14:5:9");
}

TEST_F(ADateObject, RefusesToReadAYearOutOfReach) {
  date.Call("setYear", -1900);
  EXPECT_EQ(NumberOf("getYear"), 6);
  date.Call("setYear", 2147483647);
  EXPECT_EQ(NumberOf("getHours"), 6);
  date.Call("setYear", 126);
  EXPECT_EQ(Read(), "126 10 20 14:5:9");
}

TEST_F(ADateObject, LeavesOutTheTenDaysOf1582) {
  date.Call("setYear", -318);
  date.Call("setmonth", 9);
  date.Call("setDate", 4);
  EXPECT_EQ(Read(), "-318 9 4 14:5:9");
  date.Call("setDate", 5);
  EXPECT_EQ(Read(), "-318 9 15 14:5:9");
  date.Call("setDate", 10);
  EXPECT_EQ(Read(), "-318 9 20 14:5:9");
}

TEST_F(ADateObject, ThatBeginsInThoseTenDaysIsTenDaysLater) {
  clock.now = DateTime::FromDate(1582, 10, 12);
  EXPECT_EQ(MakeDateObject(clock).Call("getDate").ToText(), "22");
}

TEST_F(ADateObject, FollowsTheJulianCalendarBefore1582) {
  date.Call("setYear", -400);
  date.Call("setmonth", 1);
  date.Call("setDate", 29);
  EXPECT_EQ(Read(), "-400 1 29 14:5:9");
}

}  // namespace
}  // namespace qmx::test
