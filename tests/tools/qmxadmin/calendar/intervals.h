// Intervals for tests, written as they are read: At("2026-11-23 08:00").
#pragma once

#include <stdexcept>
#include <string>

#include "tools/qmxadmin/calendar/weeks.h"

namespace qmx::test {

inline DateTime At(const std::string& text) {
  const std::optional<DateTime> moment = DateTime::Parse(text);
  if (!moment) throw std::runtime_error("no moment: " + text);
  return *moment;
}

inline Interval From(const std::string& from, const std::string& to) { return {At(from), At(to)}; }

// Three weeks that hold every kind of day: usual ones, a night, midnight touched from both sides, overlaps of two and
// of three, short intervals, a whole day, none at all, and two intervals that cannot be drawn.
inline std::vector<Interval> EveryKindOfDay() {
  std::vector<Interval> intervals;
  for (const std::string day : {"2026-11-23", "2026-11-24", "2026-11-25", "2026-11-26"}) {
    intervals.push_back(From(day + " 08:00", day + " 12:00"));
    intervals.push_back(From(day + " 12:30", day + " 16:30"));
  }
  for (const auto& [from, to] : {std::pair{"2026-11-27 09:15", "2026-11-27 14:45"},
                                 {"2026-11-28 22:00", "2026-11-29 06:00"},
                                 {"2026-11-29 20:00", "2026-11-30 00:00"},
                                 {"2026-11-30 00:00", "2026-11-30 02:00"},
                                 {"2026-12-01 08:00", "2026-12-01 12:00"},
                                 {"2026-12-01 11:00", "2026-12-01 15:00"},
                                 {"2026-12-02 08:00", "2026-12-02 08:00"},
                                 {"2026-12-03 22:00", "2026-12-03 06:00"},
                                 {"2026-12-03 08:00", "2026-12-03 08:45"},
                                 {"2026-12-03 09:00", "2026-12-03 10:00"},
                                 {"2026-12-03 18:20", "2026-12-03 19:50"},
                                 {"2026-12-04 00:00", "2026-12-05 00:00"},
                                 {"2026-12-05 08:00", "2026-12-05 18:00"},
                                 {"2026-12-05 09:00", "2026-12-05 13:00"},
                                 {"2026-12-05 10:00", "2026-12-05 12:00"}}) {
    intervals.push_back(From(from, to));
  }
  return intervals;
}

}  // namespace qmx::test
