// A day's intervals: the calendar's ordered array and a linked list, fed the same intervals, agree after each of them.
#include <cstdint>
#include <vector>

#include "calendar/clsCalender.h"
#include "fuzz/input.h"
#include "fuzz/require.h"
#include "tests/calendar/linked_list_day.h"

namespace qmx::fuzz {
namespace {

std::string ShownIntervals(const std::vector<SubEntry>& intervals) {
  std::string text;
  for (const SubEntry& interval : intervals) {
    text += "[" + std::to_string(interval.stime) + "-" + std::to_string(interval.etime) + "]";
  }
  return text;
}

std::vector<SubEntry> Of(const test::LinkedListDay& day) {
  std::vector<SubEntry> intervals;
  for (const auto& element : day.InOrder()) intervals.push_back({element.stime, element.etime});
  return intervals;
}

// Mostly times that occur often, so that intervals touch, overlap and repeat.
std::int32_t Time(Input& input) {
  const auto byte = input.Next<std::uint8_t>();
  return byte < 250 ? byte * 10 : input.Next<std::int16_t>();
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx;
  using namespace qmx::fuzz;
  static Database database{{}};
  constexpr int kMostIntervals = 60;
  Input input(data, size);
  clsCalender calender(database);
  const std::int32_t first = Time(input);
  const std::int32_t firstEnd = Time(input);
  calender.InsertInMainArray(1, 1, 2026, first, firstEnd);
  test::LinkedListDay list(first, firstEnd);
  const auto requireSame = [&](const std::string& when) {
    RequireSame(ShownIntervals(calender.Day(0).SubArray), ShownIntervals(Of(list)), "the intervals " + when);
  };
  for (int i = 0; i < kMostIntervals && !input.IsAtEnd(); ++i) {
    const std::int32_t stime = Time(input);
    const std::int32_t etime = Time(input);
    calender.CheckSubAndInsertModify(0, stime, etime);
    list.CheckSubAndInsertModify(stime, etime);
    requireSame("after " + ShownIntervals({{stime, etime}}));
    calender.ReallignSubArray(0);
    list.ReallignSubArray();
    requireSame("joined after " + ShownIntervals({{stime, etime}}));
  }
  return 0;
}
