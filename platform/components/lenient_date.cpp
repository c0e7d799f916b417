#include "platform/components/lenient_date.h"

#include <string>

#include "platform/error.h"

namespace qmx {
namespace {

constexpr std::int64_t kChangeYear = 1582;
constexpr std::int64_t kLastYear = 200'000'000;

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

struct Day {
  std::int64_t year, month, day;  // month from 0
};

// Days of both calendars on one count. Years are taken to begin in March, so that the leap day is the last of its year.
struct Calendar {
  std::int64_t cycleYears;
  std::int64_t cycleDays;
  std::int64_t origin;

  // The day may lie outside the month.
  std::int64_t Count(const Day& date) const {
    const std::int64_t year = date.month < 2 ? date.year - 1 : date.year;
    const std::int64_t monthFromMarch = date.month < 2 ? date.month + 10 : date.month - 2;
    const std::int64_t dropped = cycleYears == 400 ? FloorDivide(year, 100) - FloorDivide(year, 400) : 0;
    return origin + year * 365 + FloorDivide(year, 4) - dropped + (153 * monthFromMarch + 2) / 5 + date.day;
  }

  Day At(std::int64_t count) const {
    std::int64_t year = FloorDivide((count - origin) * cycleYears, cycleDays);  // exact or one off
    const auto firstOf = [&](std::int64_t y) { return Count({y, 2, 1}); };
    while (firstOf(year) > count) --year;
    while (firstOf(year + 1) <= count) ++year;
    const std::int64_t dayOfYear = count - firstOf(year);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = (monthFromMarch + 2) % 12;
    return {month < 2 ? year + 1 : year, month, dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
  }
};

constexpr Calendar kJulian{4, 1461, 0};
constexpr Calendar kGregorian{400, 146097, 2};

}  // namespace

LenientDate::LenientDate(DateTime moment)
    : fields_{moment.Year(), moment.Month() - 1, moment.Day(), moment.Hour(), moment.Minute(), moment.Second()} {}

// The day alone decides the calendar, by java.util.Date's rules. Outside the year of the change the fields are read in
// their year's calendar, and in the other one if the result crosses the change. In that year they are read in the
// Julian calendar, unless both calendars put the day after the change.
LenientDate::Fields LenientDate::Resolved(const Fields& fields) {
  static const std::int64_t change = kGregorian.Count({kChangeYear, 9, 15});
  const std::int64_t seconds = fields.hour * 3600 + fields.minute * 60 + fields.second;
  const std::int64_t carried = FloorDivide(seconds, DateTime::kSecondsPerDay);
  const std::int64_t time = seconds - carried * DateTime::kSecondsPerDay;
  const Day day{fields.year, fields.month, fields.day + carried};

  Day resolved;
  if (fields.year == kChangeYear) {
    const std::int64_t count = (kGregorian.Count(day) >= change ? kGregorian : kJulian).Count(day);
    resolved = (count >= change ? kGregorian : kJulian).At(count);
  } else {
    const bool gregorian = fields.year > kChangeYear;
    const Calendar& own = gregorian ? kGregorian : kJulian;
    const bool stays = (own.Count(day) >= change) == gregorian;
    const Calendar& used = stays == gregorian ? kGregorian : kJulian;
    resolved = used.At(used.Count(day));
  }
  return {resolved.year, resolved.month, resolved.day, time / 3600, time / 60 % 60, time % 60};
}

std::int32_t LenientDate::Get(Field field) {
  if (!resolved_) {
    const Fields resolved = Resolved(fields_);
    if (resolved.year < 1 || resolved.year > kLastYear) {
      throw Error(errors::kOverflow, "Date",
                  "Overflow: the date object was set to a day in the year " + std::to_string(resolved.year) +
                      ", outside the years 1 to 200000000.");
    }
    fields_ = resolved;
    resolved_ = true;
  }
  switch (field) {
    case Field::Year:
      return static_cast<std::int32_t>(fields_.year - 1900);
    case Field::Month:
      return static_cast<std::int32_t>(fields_.month);
    case Field::Day:
      return static_cast<std::int32_t>(fields_.day);
    case Field::Hour:
      return static_cast<std::int32_t>(fields_.hour);
    case Field::Minute:
      return static_cast<std::int32_t>(fields_.minute);
    case Field::Second:
      break;
  }
  return static_cast<std::int32_t>(fields_.second);
}

void LenientDate::Set(Field field, std::int32_t value) {
  switch (field) {
    case Field::Year:
      return Put(fields_.year, std::int64_t{value} + 1900);
    case Field::Month:  // carries into the year at once, unlike other fields
      Put(fields_.year, fields_.year + FloorDivide(value, 12));
      return Put(fields_.month, value - FloorDivide(value, 12) * 12);
    case Field::Day:
      return Put(fields_.day, value);
    case Field::Hour:
      return Put(fields_.hour, value);
    case Field::Minute:
      return Put(fields_.minute, value);
    case Field::Second:
      return Put(fields_.second, value);
  }
}

void LenientDate::Put(std::int64_t& field, std::int64_t value) {
  if (field == value) return;
  field = value;
  resolved_ = false;
}

}  // namespace qmx
