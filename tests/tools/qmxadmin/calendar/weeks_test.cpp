#include "tools/qmxadmin/calendar/weeks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/qmxadmin/calendar/intervals.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// The week from Monday, 23 November 2026.
Weeks OneWeek(std::vector<Interval> intervals) {
  return WeeksOf(std::move(intervals), At("2026-11-23"), At("2026-11-29"));
}

std::vector<std::string> BlocksOf(const Day& day) {
  std::vector<std::string> texts;
  for (const Block& block : day.blocks) {
    texts.push_back(ClockText(block.from) + "-" + ClockText(block.to) + " lane " + std::to_string(block.lane));
  }
  return texts;
}

TEST(WeeksOfACalendar, AreWholeAndBeginOnMonday) {
  const Weeks weeks = WeeksOf({}, At("2026-11-25"), At("2026-12-07"));
  ASSERT_THAT(weeks.weeks, SizeIs(3));
  EXPECT_EQ(weeks.weeks[0].Monday(), At("2026-11-23"));
  EXPECT_EQ(weeks.weeks[2].days[6].date, At("2026-12-13"));
  EXPECT_EQ(weeks.minutes, 0);
}

TEST(WeeksOfACalendar, AddUpDaysAndWeeks) {
  const Weeks weeks =
      WeeksOf({From("2026-12-01 08:00", "2026-12-01 09:00"), From("2026-11-23 12:30", "2026-11-23 16:35"),
               From("2026-11-23 08:00", "2026-11-23 12:00")},
              At("2026-11-23"), At("2026-12-06"));
  EXPECT_THAT(BlocksOf(weeks.weeks[0].days[0]), ElementsAre("08:00-12:00 lane 0", "12:30-16:35 lane 0"));
  EXPECT_EQ(weeks.weeks[0].days[0].minutes, 485);
  EXPECT_EQ(weeks.weeks[0].minutes, 485);
  EXPECT_EQ(weeks.weeks[1].minutes, 60);
  EXPECT_EQ(weeks.minutes, 545);
  EXPECT_THAT(weeks.remarks, IsEmpty());
}

TEST(WeeksOfACalendar, SplitAnIntervalAtMidnight) {
  const Weeks week = OneWeek({From("2026-11-24 22:00", "2026-11-26 06:00")});
  EXPECT_THAT(BlocksOf(week.weeks[0].days[1]), ElementsAre("22:00-24:00 lane 0"));
  EXPECT_THAT(BlocksOf(week.weeks[0].days[2]), ElementsAre("00:00-24:00 lane 0"));
  EXPECT_THAT(BlocksOf(week.weeks[0].days[3]), ElementsAre("00:00-06:00 lane 0"));
  EXPECT_EQ(week.minutes, 32 * 60);
}

TEST(WeeksOfACalendar, GiveNoBlockToTheDayAtWhoseMidnightAnIntervalEnds) {
  const Weeks week = OneWeek({From("2026-11-24 20:00", "2026-11-25")});
  EXPECT_THAT(BlocksOf(week.weeks[0].days[1]), ElementsAre("20:00-24:00 lane 0"));
  EXPECT_THAT(week.weeks[0].days[2].blocks, IsEmpty());
}

TEST(WeeksOfACalendar, CutIntervalsThatBeginBeforeOrEndAfterThem) {
  const Weeks week =
      OneWeek({From("2026-11-22 22:00", "2026-11-23 06:00"), From("2026-11-29 22:00", "2026-11-30 06:00")});
  EXPECT_THAT(BlocksOf(week.weeks[0].days[0]), ElementsAre("00:00-06:00 lane 0"));
  EXPECT_THAT(BlocksOf(week.weeks[0].days[6]), ElementsAre("22:00-24:00 lane 0"));
  EXPECT_THAT(week.intervals, SizeIs(2));
}

TEST(WeeksOfACalendar, LeaveOutIntervalsOutsideOfThem) {
  const Weeks week = OneWeek({From("2026-11-22 08:00", "2026-11-23"), From("2026-11-30", "2026-11-30 08:00"),
                              From("2026-11-20 08:00", "2026-11-19 08:00")});
  EXPECT_EQ(week.minutes, 0);
  EXPECT_THAT(week.intervals, IsEmpty());
  EXPECT_THAT(week.remarks, IsEmpty());
}

TEST(WeeksOfACalendar, CountOverlappingTimeOnceAndSayWhatOverlaps) {
  const Weeks week =
      OneWeek({From("2026-11-23 08:00", "2026-11-23 12:00"), From("2026-11-23 11:00", "2026-11-23 15:00"),
               From("2026-11-23 15:00", "2026-11-23 16:00")});
  EXPECT_THAT(BlocksOf(week.weeks[0].days[0]),
              ElementsAre("08:00-12:00 lane 0", "11:00-15:00 lane 1", "15:00-16:00 lane 0"));
  EXPECT_EQ(week.weeks[0].days[0].lanes, 2);
  EXPECT_EQ(week.minutes, 8 * 60);
  EXPECT_THAT(week.remarks, ElementsAre("2026-11-23 08:00 to 2026-11-23 12:00 and 2026-11-23 11:00 to 2026-11-23 15:00 "
                                        "overlap; the totals count their common time once."));
}

TEST(WeeksOfACalendar, CountAnIntervalWithinAnotherOnce) {
  const Weeks week =
      OneWeek({From("2026-11-23 08:00", "2026-11-23 18:00"), From("2026-11-23 09:00", "2026-11-23 10:00"),
               From("2026-11-23 12:00", "2026-11-23 13:00")});
  EXPECT_EQ(week.minutes, 10 * 60);
  EXPECT_EQ(week.weeks[0].days[0].lanes, 2);
  EXPECT_THAT(week.remarks, SizeIs(2));
}

TEST(WeeksOfACalendar, ReportAnIntervalThatOccursTwice) {
  const Weeks week =
      OneWeek({From("2026-11-23 08:00", "2026-11-23 12:00"), From("2026-11-23 08:00", "2026-11-23 12:00")});
  EXPECT_EQ(week.minutes, 4 * 60);
  EXPECT_THAT(week.remarks, SizeIs(1));
}

TEST(WeeksOfACalendar, ReportIntervalsThatCannotBeDrawn) {
  const Weeks week =
      OneWeek({From("2026-11-23 22:00", "2026-11-23 06:00"), From("2026-11-24 08:00", "2026-11-24 08:00")});
  EXPECT_EQ(week.minutes, 0);
  EXPECT_THAT(week.remarks, ElementsAre("2026-11-23 22:00 to 2026-11-23 06:00 ends before it begins and is not drawn.",
                                        "2026-11-24 08:00 to 2026-11-24 08:00 has no length and is not drawn."));
  EXPECT_THAT(week.intervals, SizeIs(2));
}

TEST(WeekTitles, NameTheWeekByItsThursday) {
  EXPECT_EQ(WeekTitle(At("2026-11-23")), "Week 48 · 23 – 29 November 2026");
  EXPECT_EQ(WeekTitle(At("2026-11-30")), "Week 49 · 30 November – 6 December 2026");
  EXPECT_EQ(WeekTitle(At("2026-12-28")), "Week 53 · 28 December 2026 – 3 January 2027");
  EXPECT_EQ(WeekTitle(At("2027-01-04")), "Week 1 · 4 – 10 January 2027");
  EXPECT_EQ(WeekTitle(At("2024-12-30")), "Week 1 · 30 December 2024 – 5 January 2025");
}

TEST(WeekTitles, KnowTheDaysOfTheWeek) {
  EXPECT_EQ(DayTitle(At("2026-11-23")), "Mon 23 Nov");
  EXPECT_EQ(DayTitle(At("2026-02-01")), "Sun  1 Feb");
  EXPECT_EQ(DayTitle(At("1899-12-30")), "Sat 30 Dec");
  EXPECT_EQ(DayTitle(At("1899-12-24")), "Sun 24 Dec");
  EXPECT_EQ(MondayOf(At("2026-11-29 23:59")), At("2026-11-23"));
  EXPECT_EQ(MondayOf(At("2026-11-30")), At("2026-11-30"));
}

TEST(WeekTitles, WriteTimesOut) {
  EXPECT_EQ(DurationText(485), "8:05");
  EXPECT_EQ(ClockText(485), "08:05");
  EXPECT_EQ(SpanText(From("2026-11-23 20:00", "2026-11-24")), "20:00–24:00");
  EXPECT_EQ(SpanText(From("2026-11-23 22:00", "2026-11-24 06:00")), "22:00–06:00");
}

}  // namespace
}  // namespace qmx::test
