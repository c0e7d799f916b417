// A moment of civil time, without a zone, in whole seconds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvan {

struct Moment {
  int year = 1899;
  int month = 12;  // 1..12
  int day = 30;    // 1..31
  int hour = 0;
  int minute = 0;
  int second = 0;

  // The interface counts seconds from 1899-12-30 00:00:00.
  static Moment FromSeconds(std::int64_t seconds);
  std::int64_t Seconds() const;

  // "2026-11-20" or "2026-11-20 14:05:09", leading zeros may be missing. A day that the month does not have
  // counts into the next one: 2038-02-29 is 2038-03-01. Nothing for any other text.
  static std::optional<Moment> Parse(std::string_view text);

  std::string DateText() const;  // "2026-11-20"
  std::string Text() const;      // "2026-11-20 14:05:09"

  friend bool operator==(const Moment&, const Moment&) = default;
};

}  // namespace orvan
