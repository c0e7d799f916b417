// Arithmetic with days and minutes.
#pragma once

#include "binding/moment.h"

namespace orvan {

inline Moment Later(const Moment& moment, int days, int minutes = 0) {
  return Moment::FromSeconds(moment.Seconds() + days * std::int64_t{86400} + minutes * std::int64_t{60});
}

inline Moment At(const Moment& day, int hour, int minute = 0) {
  return {day.year, day.month, day.day, hour, minute, 0};
}

// Monday is 0.
inline int Weekday(const Moment& day) {
  const std::int64_t days = Moment{day.year, day.month, day.day}.Seconds() / 86400;  // day 0 was a Saturday
  return static_cast<int>(((days + 5) % 7 + 7) % 7);
}

inline bool IsWorkday(const Moment& day) { return Weekday(day) < 5; }

// Returns the last Sunday of a month of 31 days. In Europe clocks change on it in March and October.
inline Moment ClockChange(int year, int month) {
  const Moment last{year, month, 31};
  return Later(last, -((Weekday(last) + 1) % 7));
}

}  // namespace orvan
