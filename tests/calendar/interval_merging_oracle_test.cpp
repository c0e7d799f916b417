// Two implementations of one day, fed the same intervals, must agree after every one of them.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "calendar/clsCalender.h"
#include "tests/calendar/linked_list_day.h"

namespace qmx::test {
namespace {

using Intervals = std::vector<SubEntry>;

std::string ToText(const Intervals& intervals) {
  std::ostringstream text;
  for (const SubEntry& interval : intervals) text << "[" << interval.stime << "-" << interval.etime << "]";
  return text.str();
}

Intervals Of(const LinkedListDay& day) {
  Intervals intervals;
  for (const LinkedListDay::Element& element : day.InOrder()) intervals.push_back({element.stime, element.etime});
  return intervals;
}

std::string Difference(const clsCalender& calender, const LinkedListDay& list, const Intervals& given) {
  return ", given " + ToText(given) + ": " + ToText(calender.Day(0).SubArray) + ", but in the list " + ToText(Of(list));
}

class RandomDays {
 public:
  explicit RandomDays(unsigned seed) : random_(seed) {}

  // Few different times, so that intervals touch, overlap and repeat often.
  SubEntry Interval(bool mayEndBeforeItStarts) {
    const std::int32_t step = Number(0, 1) == 0 ? 400 : 100;
    std::int32_t stime = Number(0, 2400 / step) * step;
    std::int32_t etime = Number(0, 2400 / step) * step;
    if (etime < stime && !mayEndBeforeItStarts) std::swap(stime, etime);
    return {stime, etime};
  }
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

 private:
  std::mt19937 random_;
};

// How many of the days came to hold intervals that overlap: those that combining leaves side by side.
int AgreeOnRandomDays(int days, unsigned seed, bool mayEndBeforeItStarts) {
  RandomDays random(seed);
  Database database{{}};
  clsCalender calender(database);
  int overlapping = 0;
  for (int day = 0; day < days; ++day) {
    calender.arraycount = 0;
    Intervals given = {random.Interval(mayEndBeforeItStarts)};
    calender.InsertInMainArray(1, 1, 2026, given[0].stime, given[0].etime);
    LinkedListDay list(given[0].stime, given[0].etime);
    for (int more = random.Number(1, 9); more > 0; --more) {
      given.push_back(random.Interval(mayEndBeforeItStarts));
      calender.CheckSubAndInsertModify(0, given.back().stime, given.back().etime);
      list.CheckSubAndInsertModify(given.back().stime, given.back().etime);
      if (calender.Day(0).SubArray != Of(list)) ADD_FAILURE() << "not yet joined" << Difference(calender, list, given);
      calender.ReallignSubArray(0);
      list.ReallignSubArray();
      if (calender.Day(0).SubArray != Of(list)) ADD_FAILURE() << "joined" << Difference(calender, list, given);
      if (::testing::Test::HasFailure()) return 0;
    }
    const Intervals& result = calender.Day(0).SubArray;
    for (std::size_t i = 1; i < result.size(); ++i) {
      if (result[i].stime < result[i - 1].etime) {
        ++overlapping;
        break;
      }
    }
  }
  return overlapping;
}

TEST(IntervalMergingOracle, AgreesWithALinkedListOnManyRandomDays) {
  EXPECT_GT(AgreeOnRandomDays(30000, 20261120, false), 1000);
}

TEST(IntervalMergingOracle, AgreesWithALinkedListIfIntervalsEndBeforeTheyStart) {
  EXPECT_GT(AgreeOnRandomDays(10000, 4711, true), 1000);
}

}  // namespace
}  // namespace qmx::test
