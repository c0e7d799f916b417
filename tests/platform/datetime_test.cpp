// Civil date and time: building with carrying, the canonical text, reading it back.
#include "platform/datetime.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace qmx::test {
namespace {

std::string DateText(std::int64_t year, std::int64_t month, std::int64_t day) {
  return DateTime::FromDate(year, month, day).ToText();
}

std::string Reread(std::string_view text) {
  const std::optional<DateTime> moment = DateTime::Parse(text);
  return moment ? moment->ToText() : "nothing";
}

std::int32_t NumberRaisedBy(std::int64_t year, std::int64_t month, std::int64_t day) {
  try {
    DateTime::FromDate(year, month, day);
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

TEST(DateTime, CountsSecondsFromTheZeroDateTimeOfAutomation) {
  EXPECT_EQ(DateTime().ToText(), "1899-12-30");
  EXPECT_EQ(DateTime::FromDate(1899, 12, 30).Seconds(), 0);
  EXPECT_EQ(DateTime::FromDate(1899, 12, 31).Seconds(), 86400);
  EXPECT_EQ(DateTime::FromDate(1899, 12, 29).Seconds(), -86400);
  EXPECT_EQ(DateTime::FromDate(1970, 1, 1).Seconds(), 25569LL * 86400);
  EXPECT_EQ(DateTime::FromDate(2026, 11, 20).Seconds(), 46346LL * 86400);
}

TEST(DateTime, GivesItsPartsAlsoBeforeTheZeroDateTime) {
  const DateTime moment = DateTime::FromDate(1752, 2, 29).PlusTime(23, 4, 5);
  EXPECT_EQ(moment.Year(), 1752);
  EXPECT_EQ(moment.Month(), 2);
  EXPECT_EQ(moment.Day(), 29);
  EXPECT_EQ(moment.Hour(), 23);
  EXPECT_EQ(moment.Minute(), 4);
  EXPECT_EQ(moment.Second(), 5);
  EXPECT_EQ(moment.DatePart().ToText(), "1752-02-29");
}

TEST(DateTime, CarriesMonthsOutsideTheYear) {
  EXPECT_EQ(DateText(2026, 13, 1), "2027-01-01");
  EXPECT_EQ(DateText(2026, 0, 1), "2025-12-01");
  EXPECT_EQ(DateText(2026, -12, 1), "2024-12-01");
  EXPECT_EQ(DateText(2026, 36, 15), "2028-12-15");
}

TEST(DateTime, CarriesDaysOutsideTheMonth) {
  EXPECT_EQ(DateText(2026, 14, 0), "2027-01-31");
  EXPECT_EQ(DateText(2026, 2, 29), "2026-03-01");
  EXPECT_EQ(DateText(2024, 2, 29), "2024-02-29");
  EXPECT_EQ(DateText(2100, 2, 29), "2100-03-01");
  EXPECT_EQ(DateText(2000, 2, 29), "2000-02-29");
  EXPECT_EQ(DateText(2026, 1, -365), "2024-12-31");
}

TEST(DateTime, RunsFromTheYear100To9999) {
  EXPECT_EQ(DateText(100, 1, 1), "0100-01-01");
  EXPECT_EQ(DateText(9999, 12, 31), "9999-12-31");
  EXPECT_EQ(NumberRaisedBy(99, 12, 31), 6);
  EXPECT_EQ(NumberRaisedBy(100, 1, 0), 6);
  EXPECT_EQ(NumberRaisedBy(9999, 12, 32), 6);
  EXPECT_EQ(NumberRaisedBy(9999, 13, 1), 6);
  EXPECT_EQ(NumberRaisedBy(34667, 32768, 32767), 6);
  EXPECT_EQ(NumberRaisedBy(INT64_MAX, INT64_MIN, INT64_MAX), 6);
  EXPECT_EQ(NumberRaisedBy(9999, 1, 365), 0);
}

TEST(DateTime, CarriesTimesOfDayIntoTheNextOrThePreviousDay) {
  const DateTime day = DateTime::FromDate(2026, 11, 20);
  EXPECT_EQ(day.PlusTime(24, 0, 0).ToText(), "2026-11-21");
  EXPECT_EQ(day.PlusTime(0, 0, -1).ToText(), "2026-11-19 23:59:59");
  EXPECT_EQ(day.PlusTime(0, 61, 61).ToText(), "2026-11-20 01:02:01");
  EXPECT_EQ(day.PlusDays(-20).ToText(), "2026-10-31");
  EXPECT_EQ(DateTime::FromDate(9999, 12, 31).PlusTime(24, 0, 1).ToText(), "10000-01-01 00:00:01");
}

TEST(DateTime, WritesTheTimeOfDayOnlyWhenItIsNotMidnight) {
  EXPECT_EQ(DateTime::FromDate(2026, 11, 20).ToText(), "2026-11-20");
  EXPECT_EQ(DateTime::FromDate(2026, 1, 2).PlusTime(0, 0, 1).ToText(), "2026-01-02 00:00:01");
  EXPECT_EQ(DateTime::FromDate(2026, 1, 2).PlusTime(14, 5, 9).ToText(), "2026-01-02 14:05:09");
}

TEST(DateTime, HasATextThatSortsAsTheDatesDo) {
  const DateTime midnight = DateTime::FromDate(2026, 11, 20);
  const DateTime later = midnight.PlusTime(0, 0, 1);
  const DateTime nextDay = midnight.PlusDays(1);
  EXPECT_LT(midnight, later);
  EXPECT_LT(midnight.ToText(), later.ToText());
  EXPECT_LT(later.ToText(), nextDay.ToText());
  EXPECT_LT(DateText(999, 12, 31), DateText(1000, 1, 1));
}

TEST(DateTime, ReadsEveryDayOfFourCenturiesBackFromItsText) {
  const DateTime first = DateTime::FromDate(1800, 1, 1);
  int lastDay = 31;
  for (std::int64_t n = 0; n < 146097; ++n) {
    const DateTime day = first.PlusDays(n);
    ASSERT_EQ(DateTime::Parse(day.ToText()), day);
    ASSERT_TRUE(day.Day() == lastDay + 1 || day.Day() == 1) << day.ToText();
    lastDay = day.Day();
  }
  EXPECT_EQ(first.PlusDays(146097).ToText(), "2200-01-01");
}

TEST(DateTime, ReadsTheFormsThatDatabasesAndPeopleWrite) {
  EXPECT_EQ(Reread("2026-11-20"), "2026-11-20");
  EXPECT_EQ(Reread("2026-1-2"), "2026-01-02");
  EXPECT_EQ(Reread("2026-11-20 14:05:09"), "2026-11-20 14:05:09");
  EXPECT_EQ(Reread("2026-11-20T14:05:09"), "2026-11-20 14:05:09");
  EXPECT_EQ(Reread("2026-11-20 4:05"), "2026-11-20 04:05:00");
  EXPECT_EQ(Reread("2026-11-20 00:00:00"), "2026-11-20");
  EXPECT_EQ(Reread("2026-11-20 14:05:09.000000"), "2026-11-20 14:05:09");
  EXPECT_EQ(Reread("2038-02-29"), "2038-03-01");
}

TEST(DateTime, ReadsNothingElse) {
  for (const char* text : {"",
                           "2026",
                           "2026-11",
                           "2026-11-",
                           "2026-11-20 ",
                           "2026-11-20 14",
                           "2026-11-20 14:5",
                           "2026-11-20 24:00:00",
                           "2026-11-20 14:60:00",
                           "2026-11-20 14:05:60",
                           "2026-11-20 14:05:09.",
                           "2026-11-20 14:05:09.5",
                           "2026-11-20 14:05:09Z",
                           "2026-00-20",
                           "2026-13-20",
                           "2026-11-00",
                           "2026-11-32",
                           "20.11.2026",
                           "0099-01-01",
                           "12026-01-01",
                           "-2026-01-01",
                           " 2026-11-20",
                           "2026-11-20  14:05:09",
                           "2026-11-20-14:05:09",
                           "next Tuesday"}) {
    EXPECT_EQ(Reread(text), "nothing") << text;
  }
}

}  // namespace
}  // namespace qmx::test
