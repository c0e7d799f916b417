// Combines a new interval of a day with the existing ones, and joins touching ones.
//
// Combining is partial on purpose. An interval that starts before an existing one and ends inside it stays beside it,
// so intervals of a day may overlap. Times are compared as plain numbers.
#include "calendar/clsCalender.h"

namespace qmx {

std::int32_t clsCalender::CheckSubAndInsertModify(std::int16_t pos, std::int32_t stime, std::int32_t etime) {
  std::vector<SubEntry>& intervals = DayToChange(pos).SubArray;

  auto current = intervals.begin();
  while (current != intervals.end()) {
    const bool startsBefore = stime < current->stime;
    if (!startsBefore && etime <= current->etime) return 0;  // inside

    if (startsBefore && etime < current->etime) {
      intervals.insert(current, {stime, etime});  // may overlap the current one
      return 0;
    }
    if (startsBefore) current->stime = stime;
    if (startsBefore && etime == current->etime) return 0;

    if (startsBefore || stime < current->etime) {
      // The part after the current interval is combined as a new interval, beginning with the first one.
      stime = current->etime;
      current = intervals.begin();
      continue;
    }
    if (current + 1 == intervals.end()) {
      intervals.push_back({stime, etime});
      return 0;
    }
    ++current;
  }
  return 0;
}

Variant clsCalender::ReallignSubArray(std::int16_t ps) {
  MainEntry& entry = DayToChange(ps);
  std::vector<SubEntry>& intervals = entry.SubArray;
  std::vector<SubEntry> joined;
  joined.reserve(static_cast<std::size_t>(CountOf(entry)));
  for (const SubEntry& interval : intervals) {
    if (!joined.empty() && joined.back().etime == interval.stime) {
      joined.back().etime = interval.etime;
    } else {
      joined.push_back(interval);
    }
  }
  intervals = std::move(joined);
  return {};
}

}  // namespace qmx
