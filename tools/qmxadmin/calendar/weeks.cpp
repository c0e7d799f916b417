#include "tools/qmxadmin/calendar/weeks.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

namespace qmx {
namespace {

constexpr const char* kDays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
constexpr const char* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};

std::int64_t DayNumber(DateTime moment) { return moment.DatePart().Seconds() / DateTime::kSecondsPerDay; }

// Returns 0 for Monday. Day 0 was a Saturday.
int WeekdayOf(DateTime day) { return static_cast<int>(((DayNumber(day) + 5) % 7 + 7) % 7); }

std::string MomentText(DateTime moment) {
  return fmt::format("{} {}", moment.DatePart().ToText(), ClockText(MinuteOf(moment)));
}

std::string Whole(const Interval& interval) {
  return fmt::format("{} to {}", MomentText(interval.from), MomentText(interval.to));
}

// Numbers weeks as ISO 8601 does: week 1 holds the first Thursday of the year.
int WeekNumber(DateTime monday) {
  const DateTime thursday = monday.PlusDays(3);
  return static_cast<int>((DayNumber(thursday) - DayNumber(DateTime::FromDate(thursday.Year(), 1, 1))) / 7 + 1);
}

// Assigns lanes, reports overlaps and adds up the day. The blocks are in the order of their start.
void Arrange(Day& day, std::vector<std::string>& remarks) {
  std::vector<int> laneEnds;
  int covered = 0;
  const Block* longest = nullptr;  // the block so far that ends last
  for (Block& block : day.blocks) {
    const auto lane = std::find_if(laneEnds.begin(), laneEnds.end(), [&](int end) { return end <= block.from; });
    block.lane = static_cast<int>(lane - laneEnds.begin());
    if (lane == laneEnds.end()) {
      laneEnds.push_back(block.to);
    } else {
      *lane = block.to;
    }
    if (longest && block.from < longest->to) {
      remarks.push_back(fmt::format("{} and {} overlap; the totals count their common time once.",
                                    Whole(longest->whole), Whole(block.whole)));
    }
    day.minutes += std::max(0, block.to - std::max(block.from, covered));
    covered = std::max(covered, block.to);
    if (!longest || block.to > longest->to) longest = &block;
  }
  day.lanes = static_cast<int>(laneEnds.size());
}

}  // namespace

Weeks WeeksOf(std::vector<Interval> intervals, DateTime from, DateTime to) {
  std::sort(intervals.begin(), intervals.end(), [](const Interval& one, const Interval& other) {
    return std::tie(one.from, one.to) < std::tie(other.from, other.to);
  });
  Weeks all;
  for (DateTime monday = MondayOf(from); monday <= to; monday = monday.PlusDays(7)) {
    Week& week = all.weeks.emplace_back();
    for (int day = 0; day < 7; ++day) week.days[static_cast<std::size_t>(day)].date = monday.PlusDays(day);
  }
  const DateTime first = MondayOf(from);
  const DateTime end = first.PlusDays(static_cast<std::int64_t>(all.weeks.size()) * 7);
  for (const Interval& interval : intervals) {
    const bool isOutside = interval.from >= end || (interval.from < first && interval.to <= first);
    if (isOutside) continue;
    all.intervals.push_back(interval);
    if (interval.to <= interval.from) {
      all.remarks.push_back(Whole(interval) + (interval.to == interval.from
                                                   ? " has no length and is not drawn."
                                                   : " ends before it begins and is not drawn."));
      continue;
    }
    for (DateTime day = std::max(interval.from.DatePart(), first); day < std::min(interval.to, end);
         day = day.PlusDays(1)) {
      const auto index = static_cast<std::size_t>(DayNumber(day) - DayNumber(first));
      const int start = interval.from <= day ? 0 : MinuteOf(interval.from);
      const int stop = interval.to >= day.PlusDays(1) ? kMinutesPerDay : MinuteOf(interval.to);
      if (start < stop) all.weeks[index / 7].days[index % 7].blocks.push_back({start, stop, 0, interval});
    }
  }
  for (Week& week : all.weeks) {
    for (Day& day : week.days) {
      std::stable_sort(day.blocks.begin(), day.blocks.end(),
                       [](const Block& one, const Block& other) { return one.from < other.from; });
      Arrange(day, all.remarks);
      week.minutes += day.minutes;
    }
    all.minutes += week.minutes;
  }
  return all;
}

DateTime MondayOf(DateTime day) { return day.DatePart().PlusDays(-WeekdayOf(day)); }

std::string PeriodText(DateTime first, DateTime last) {
  const auto day = [](DateTime date) { return std::to_string(date.Day()); };
  const auto month = [](DateTime date) { return " " + std::string(kMonths[date.Month() - 1]); };
  const auto year = [](DateTime date) { return " " + std::to_string(date.Year()); };
  const bool sameYear = first.Year() == last.Year();
  const bool sameMonth = sameYear && first.Month() == last.Month();
  return day(first) + (sameMonth ? "" : month(first)) + (sameYear ? "" : year(first)) + " – " + day(last) +
         month(last) + year(last);
}

std::string WeekTitle(DateTime monday) {
  return fmt::format("Week {} · {}", WeekNumber(monday), PeriodText(monday, monday.PlusDays(6)));
}

std::string DayTitle(DateTime day) {
  return fmt::format("{} {:2} {:.3}", kDays[WeekdayOf(day)], day.Day(), kMonths[day.Month() - 1]);
}

std::string DurationText(int minutes) { return fmt::format("{}:{:02}", minutes / 60, minutes % 60); }

std::string ClockText(int minutes) { return fmt::format("{:02}:{:02}", minutes / 60, minutes % 60); }

std::string SpanText(const Interval& interval) {
  const int end = MinuteOf(interval.to);
  return fmt::format("{}–{}", ClockText(MinuteOf(interval.from)), ClockText(end == 0 ? kMinutesPerDay : end));
}

}  // namespace qmx
