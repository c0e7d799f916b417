#include "platform/com/ole_date.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

DateTime At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return DateTime::FromDate(year, month, day).PlusTime(hour, minute, second);
}

struct Pair {
  double days;
  DateTime moment;
};

const Pair kPairs[] = {
    {0, At(1899, 12, 30)},
    {0.25, At(1899, 12, 30, 6)},
    {1, At(1899, 12, 31)},
    {46346.58690972222, At(2026, 11, 20, 14, 5, 9)},
    {-1, At(1899, 12, 29)},
    {-1.25, At(1899, 12, 29, 6)},
    {-657434, At(100, 1, 1)},
    {-657434.75, At(100, 1, 1, 18)},
    {2958465.999988426, At(9999, 12, 31, 23, 59, 59)},
};

TEST(ADayNumber, BecomesADateTime) {
  for (const Pair& pair : kPairs) EXPECT_EQ(FromOleDate(pair.days).ToText(), pair.moment.ToText()) << pair.days;
}

TEST(ADayNumber, IsMadeOfADateTime) {
  for (const Pair& pair : kPairs) EXPECT_DOUBLE_EQ(ToOleDate(pair.moment), pair.days) << pair.moment.ToText();
}

TEST(ADayNumber, OfDayZeroHasTheSameTimeWithEitherSign) { EXPECT_EQ(FromOleDate(-0.25), At(1899, 12, 30, 6)); }

TEST(ADayNumber, IsRoundedToTheNearestSecond) {
  EXPECT_EQ(FromOleDate(1 + 0.6 / 86400), At(1899, 12, 31, 0, 0, 1));
  EXPECT_EQ(FromOleDate(1 + 86399.6 / 86400), At(1900, 1, 1));
  EXPECT_EQ(FromOleDate(-1 - 86399.6 / 86400), At(1899, 12, 30));
}

TEST(ADayNumber, ReadsBackForEverySecondOfADay) {
  for (const DateTime day : {At(1850, 3, 1), At(2026, 11, 20), At(9999, 12, 31)}) {
    for (int second = 0; second < 86400; ++second) {
      const DateTime moment = day.PlusTime(0, 0, second);
      ASSERT_EQ(FromOleDate(ToOleDate(moment)), moment) << moment.ToText();
    }
  }
}

TEST(ADayNumber, OutsideTheYearsIsAnOverflow) {
  for (const double days : {-657435.0, 2958466.0, 1e300, -1e300, std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(Raised([&] { FromOleDate(days); }).Number(), 6) << days;
  }
  EXPECT_EQ(Raised([] { FromOleDate(2958466); }).Description(),
            "Overflow: the date-time of day number 2958466 lies outside the years 100 to 9999.");
}

}  // namespace
}  // namespace qmx::test
