// Working intervals by week and day, Monday to Sunday, for the pictures of a calendar.
//
// An interval that continues over midnight becomes a block on each of its days. Overlapping blocks get separate lanes,
// and the totals count their common time once. A remark names each overlap and each interval that cannot be drawn,
// because it has no length or ends before it begins. Seconds are dropped.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/datetime.h"

namespace qmx {

constexpr int kMinutesPerDay = 1440;

// Returns the minutes since midnight.
inline int MinuteOf(DateTime moment) { return moment.Hour() * 60 + moment.Minute(); }

struct Interval {
  DateTime from;
  DateTime to;
};

// The part of an interval that lies on one day, in minutes since midnight.
struct Block {
  int from = 0;
  int to = 0;  // up to kMinutesPerDay
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
  std::vector<Interval> intervals;  // all intervals of these weeks, drawn or not, by their start
  std::vector<std::string> remarks;
  int minutes = 0;
};

// Returns the whole weeks from the week of `from` to the week of `to`. The intervals may be in any order. Those outside
// of the weeks are left out.
Weeks WeeksOf(std::vector<Interval> intervals, DateTime from, DateTime to);

DateTime MondayOf(DateTime day);

// "Week 48 · 23 – 29 November 2026", "Week 1 · 28 December 2026 – 3 January 2027".
std::string WeekTitle(DateTime monday);
std::string PeriodText(DateTime first, DateTime last);

std::string DayTitle(DateTime day);              // "Mon 23 Nov"
std::string DurationText(int minutes);           // "8:05"
std::string ClockText(int minutes);              // "08:05", "24:00"
std::string SpanText(const Interval& interval);  // "22:00–06:00"

}  // namespace qmx
