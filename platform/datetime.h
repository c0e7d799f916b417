// Zone-less civil date and time in whole seconds.
//
// A DateTime counts seconds from 1899-12-30 00:00:00, the zero date-time of automation; days before it are negative.
// There is no time zone and no daylight saving: what the ERP says is what is stored. Years run from 100 to 9999;
// building a date outside that range is error 6 (overflow).
//
// One canonical text form: "YYYY-MM-DD", followed by " HH:MM:SS" only when the time of day is not midnight. Logs,
// traces and SQL texts show it. Where a database stores moments as texts, the full form has the time of day at midnight
// too: all moments then have one length, and compare as SQLite's own datetime() does.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qmx {

class DateTime {
 public:
  static constexpr std::int64_t kSecondsPerDay = 86400;

  constexpr DateTime() = default;
  static constexpr DateTime FromSeconds(std::int64_t seconds) { return DateTime(seconds); }

  // The day at midnight. Months outside 1..12 and days outside the month carry over, both ways: (2026, 14, 0) is
  // 2027-01-31. Raises 6 outside the years 100 to 9999.
  static DateTime FromDate(std::int64_t year, std::int64_t month, std::int64_t day);

  // The canonical form, with or without leading zeros in month, day and hour, seconds optional, "T" or a blank between
  // date and time, a fraction of zeros allowed. A day that does not exist (2038-02-29) carries over as in FromDate.
  // Nothing for any other text.
  static std::optional<DateTime> Parse(std::string_view text);

  std::int64_t Seconds() const { return seconds_; }  // since 1899-12-30 00:00:00
  int Year() const;
  int Month() const;   // 1..12
  int Day() const;     // 1..31
  int Hour() const;    // 0..23
  int Minute() const;  // 0..59
  int Second() const;  // 0..59

  DateTime DatePart() const;  // the same day at midnight
  DateTime PlusDays(std::int64_t days) const { return DateTime(seconds_ + days * kSecondsPerDay); }

  // Parts outside their usual range carry over: PlusTime(24, 0, 0) is the next day.
  DateTime PlusTime(std::int64_t hours, std::int64_t minutes, std::int64_t seconds) const {
    return DateTime(seconds_ + hours * 3600 + minutes * 60 + seconds);
  }

  std::string ToText() const;      // the canonical form
  std::string ToFullText() const;  // the full form

  friend constexpr auto operator<=>(DateTime, DateTime) = default;  // NOLINT(modernize-use-nullptr): takes it for one

 private:
  constexpr explicit DateTime(std::int64_t seconds) : seconds_(seconds) {}
  std::int64_t seconds_ = 0;
};

}  // namespace qmx
