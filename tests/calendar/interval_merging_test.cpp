// Expected intervals are written out; times are hours * 100 + minutes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "calendar/clsCalender.h"
#include "platform/error.h"

namespace qmx {

static void PrintTo(const SubEntry& interval, std::ostream* out) {
  *out << "[" << interval.stime << "-" << interval.etime << "]";
}

namespace test {
namespace {

using ::testing::ElementsAre;
using Intervals = std::vector<SubEntry>;

class IntervalMerging : public ::testing::Test {
 protected:
  void Add(std::int32_t stime, std::int32_t etime) {
    std::int16_t pos = 0;
    if (calender.Present_in_Main_Array(5, 3, 2001, pos)) {
      EXPECT_EQ(calender.CheckSubAndInsertModify(pos, stime, etime), 0);
      EXPECT_TRUE(calender.ReallignSubArray(pos).IsEmpty());
    } else {
      EXPECT_EQ(calender.InsertInMainArray(5, 3, 2001, stime, etime), 1);
    }
  }

  // The intervals of a day after the last one was added to the others.
  Intervals After(const Intervals& added) {
    for (const SubEntry& interval : added) Add(interval.stime, interval.etime);
    return calender.Day(0).SubArray;
  }

  Database database{{}};
  clsCalender calender{database};
};

TEST_F(IntervalMerging, AddsNothingForTheSameInterval) {
  EXPECT_THAT(After({{800, 1200}, {800, 1200}}), ElementsAre(SubEntry{800, 1200}));
}

TEST_F(IntervalMerging, AddsNothingForAnIntervalInside) {
  EXPECT_THAT(After({{800, 1200}, {900, 1100}}), ElementsAre(SubEntry{800, 1200}));
}

TEST_F(IntervalMerging, MovesTheStartForAnIntervalThatStartsBeforeAndEndsAtTheSameTime) {
  EXPECT_THAT(After({{800, 1200}, {700, 1200}}), ElementsAre(SubEntry{700, 1200}));
}

TEST_F(IntervalMerging, MovesTheStartOfALaterIntervalAsWell) {
  EXPECT_THAT(After({{800, 1000}, {1300, 1700}, {1200, 1700}}), ElementsAre(SubEntry{800, 1000}, SubEntry{1200, 1700}));
}

TEST_F(IntervalMerging, JoinsAnIntervalWhoseStartWasMovedToTheOneBefore) {
  EXPECT_THAT(After({{800, 1200}, {1300, 1700}, {1200, 1700}}), ElementsAre(SubEntry{800, 1700}));
}

TEST_F(IntervalMerging, LeavesTheIntervalsAfterOneWhoseStartWasMoved) {
  EXPECT_THAT(After({{800, 1200}, {1300, 1700}, {700, 1200}}), ElementsAre(SubEntry{700, 1200}, SubEntry{1300, 1700}));
}

TEST_F(IntervalMerging, GrowsBothWaysForAnIntervalThatCovers) {
  EXPECT_THAT(After({{800, 1200}, {700, 1300}}), ElementsAre(SubEntry{700, 1300}));
}

TEST_F(IntervalMerging, GrowsAtTheEndForAnIntervalThatStartsInside) {
  EXPECT_THAT(After({{800, 1200}, {900, 1300}}), ElementsAre(SubEntry{800, 1300}));
}

TEST_F(IntervalMerging, JoinsAnIntervalThatStartsWhereOneEnds) {
  EXPECT_THAT(After({{800, 1200}, {1200, 1700}}), ElementsAre(SubEntry{800, 1700}));
}

TEST_F(IntervalMerging, KeepsALaterIntervalApart) {
  EXPECT_THAT(After({{800, 1200}, {1300, 1700}}), ElementsAre(SubEntry{800, 1200}, SubEntry{1300, 1700}));
}

TEST_F(IntervalMerging, PutsAnEarlierIntervalFirst) {
  EXPECT_THAT(After({{1300, 1700}, {800, 1200}}), ElementsAre(SubEntry{800, 1200}, SubEntry{1300, 1700}));
}

TEST_F(IntervalMerging, KeepsAnOverlappingEarlierIntervalBesideTheOther) {
  EXPECT_THAT(After({{800, 1200}, {700, 1000}}), ElementsAre(SubEntry{700, 1000}, SubEntry{800, 1200}));
}

TEST_F(IntervalMerging, JoinsTheRemainderToTheFirstAndLetsItOverlapTheSecond) {
  EXPECT_THAT(After({{800, 1200}, {1300, 1700}, {1100, 1400}}), ElementsAre(SubEntry{800, 1400}, SubEntry{1300, 1700}));
}

TEST_F(IntervalMerging, GrowsToMidnight) {
  EXPECT_THAT(After({{800, 1200}, {1000, 2400}}), ElementsAre(SubEntry{800, 2400}));
}

TEST_F(IntervalMerging, JoinsAnEarlierIntervalThatEndsWhereTheNextStarts) {
  EXPECT_THAT(After({{1200, 1700}, {800, 1200}}), ElementsAre(SubEntry{800, 1700}));
}

TEST_F(IntervalMerging, JoinsARunOfTouchingIntervalsInOne) {
  EXPECT_THAT(After({{800, 1000}, {1200, 1400}, {1000, 1200}}), ElementsAre(SubEntry{800, 1400}));
}

TEST_F(IntervalMerging, FillsEveryGapForAnIntervalThatCoversSeveral) {
  EXPECT_THAT(After({{800, 1000}, {1200, 1400}, {1600, 1800}, {700, 1900}}), ElementsAre(SubEntry{700, 1900}));
}

TEST_F(IntervalMerging, PutsAnIntervalBetweenTwoOthers) {
  EXPECT_THAT(After({{600, 800}, {1600, 1800}, {1000, 1200}}),
              ElementsAre(SubEntry{600, 800}, SubEntry{1000, 1200}, SubEntry{1600, 1800}));
}

// The numbers are compared as they are: a shift over midnight is one that ends before it starts.
TEST_F(IntervalMerging, ComparesAShiftOverMidnightAsThePlainNumbersThatItHas) {
  EXPECT_THAT(After({{2200, 600}, {800, 1200}}), ElementsAre(SubEntry{600, 1200}));
}

TEST_F(IntervalMerging, LeavesADayWithoutIntervalsAsItIs) {
  calender.arraycount = 1;  // makes room for a day that nobody filled
  calender.InsertInMainArray(5, 3, 2001, 800, 1200);
  calender.CheckSubAndInsertModify(0, 800, 1200);
  EXPECT_TRUE(calender.Day(0).SubArray.empty());
}

TEST_F(IntervalMerging, KeepsTheIntervalsOfOtherDays) {
  calender.InsertInMainArray(4, 3, 2001, 800, 1200);
  calender.InsertInMainArray(5, 3, 2001, 800, 1200);
  calender.CheckSubAndInsertModify(1, 1200, 1300);
  calender.ReallignSubArray(1);
  EXPECT_THAT(calender.Day(0).SubArray, ElementsAre(SubEntry{800, 1200}));
  EXPECT_THAT(calender.Day(1).SubArray, ElementsAre(SubEntry{800, 1300}));
}

TEST_F(IntervalMerging, RefusesADayThatIsNotThere) {
  try {
    calender.CheckSubAndInsertModify(0, 800, 1200);
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 9);
  }
  EXPECT_THROW(calender.ReallignSubArray(-1), Error);
}

TEST_F(IntervalMerging, OverflowsForMoreThan32767IntervalsOfADay) {
  constexpr std::int32_t kMost = 32767;
  Add(2 * kMost, 2 * kMost + 1);
  for (std::int32_t i = kMost - 1; i > 0; --i) calender.CheckSubAndInsertModify(0, 2 * i, 2 * i + 1);
  EXPECT_NO_THROW(calender.ReallignSubArray(0));
  EXPECT_EQ(calender.Day(0).SubArray.size(), 32767u);

  calender.CheckSubAndInsertModify(0, 0, 1);
  try {
    calender.ReallignSubArray(0);
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 6);
  }
}

}  // namespace
}  // namespace test
}  // namespace qmx
