// Working intervals as weeks of days, Monday to Sunday: what a picture of a calendar shows.
//
// An interval that goes over midnight becomes a block on each of its days. Blocks that overlap stand in lanes beside
// each other, and the totals count their common time once. What cannot be drawn (an interval without length, or one
// that ends before it begins) becomes a remark, and so does what overlaps. Seconds are dropped.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/datetime.h"

namespace qmx {

struct Interval {
  DateTime from;
  DateTime to;
};

// The part of an interval that lies on one day, in minutes since midnight.
struct Block {
  int from = 0;
  int to = 0;  // up to 1440
  int lane = 0;
  Interval whole;
};

struct Day {
  DateTime date;
  std::vector<Block> blocks;  // by their start
  int lanes = 0;
  int minutes = 0;
};

struct Week {
  std::array<Day, 7> days;
  int minutes = 0;

  DateTime Monday() const { return days[0].date; }
};

struct Weeks {
  std::vector<Week> weeks;
  std::vector<Interval> intervals;  // all that touch them, drawn or not, by their start
  std::vector<std::string> remarks;
  int minutes = 0;
};

// The whole weeks that hold the days from `from` to `to`. Intervals in any order; what lies in no such week is left
// out.
Weeks WeeksOf(std::vector<Interval> intervals, DateTime from, DateTime to);

DateTime MondayOf(DateTime day);

// "Week 48 · 23 – 29 November 2026", "Week 1 · 28 December 2026 – 3 January 2027".
std::string WeekTitle(DateTime monday);
std::string PeriodText(DateTime first, DateTime last);

std::string DayTitle(DateTime day);              // "Mon 23 Nov"
std::string DurationText(int minutes);           // "8:05"
std::string ClockText(int minutes);              // "08:05", "24:00"
std::string SpanText(const Interval& interval);  // "22:00–06:00", each with its own time of day

}  // namespace qmx
