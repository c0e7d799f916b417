#include "fuzz/plain_dates.h"

namespace qmx::fuzz {
namespace {

constexpr std::int64_t kChangeYear = 1582;
constexpr int kDaysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

std::int64_t Floor(std::int64_t a, std::int64_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }
std::int64_t Rest(std::int64_t a, std::int64_t b) { return a - Floor(a, b) * b; }

bool IsLeap(Rule rule, std::int64_t year) {
  if (rule == Rule::Julian) return Rest(year, 4) == 0;
  return Rest(year, 4) == 0 && (Rest(year, 100) != 0 || Rest(year, 400) == 0);
}

std::int64_t DaysBeforeYear(Rule rule, std::int64_t year) {
  const std::int64_t last = year - 1;
  const std::int64_t julian = last * 365 + Floor(last, 4);
  // 15 October 1582 by the Gregorian rule is 5 October by the Julian one.
  return rule == Rule::Julian ? julian : julian - Floor(last, 100) + Floor(last, 400) + 2;
}

std::int64_t DaysBeforeMonth(Rule rule, std::int64_t year, std::int64_t month) {
  return kDaysBefore[month] + (month > 1 && IsLeap(rule, year) ? 1 : 0);
}

}  // namespace

std::int64_t DayCount(Rule rule, const PlainDay& day) {
  const std::int64_t year = day.year + Floor(day.month, 12);
  return DaysBeforeYear(rule, year) + DaysBeforeMonth(rule, year, Rest(day.month, 12)) + day.day;
}

PlainDay DayAt(Rule rule, std::int64_t count) {
  std::int64_t year = Floor(count * 400, 146097);
  while (DaysBeforeYear(rule, year) >= count) --year;
  while (DaysBeforeYear(rule, year + 1) < count) ++year;
  const std::int64_t dayOfYear = count - DaysBeforeYear(rule, year);
  std::int64_t month = 11;
  while (DaysBeforeMonth(rule, year, month) >= dayOfYear) --month;
  return {year, month, dayOfYear - DaysBeforeMonth(rule, year, month)};
}

void PlainDate::SetMonth(std::int64_t month) {
  day.year += Floor(month, 12);
  day.month = Rest(month, 12);
}

void PlainDate::Resolve() {
  const std::int64_t seconds = hour * 3600 + minute * 60 + second;
  day.day += Floor(seconds, 86400);
  const std::int64_t time = Rest(seconds, 86400);
  hour = time / 3600;
  minute = time / 60 % 60;
  second = time % 60;

  const std::int64_t change = DayCount(Rule::Gregorian, {kChangeYear, 9, 15});
  const auto ruleOf = [&](std::int64_t count) { return count >= change ? Rule::Gregorian : Rule::Julian; };
  if (day.year == kChangeYear) {
    const bool isBehind = DayCount(Rule::Gregorian, day) >= change;
    const std::int64_t count = DayCount(isBehind ? Rule::Gregorian : Rule::Julian, day);
    day = DayAt(ruleOf(count), count);
  } else {
    const Rule own = day.year > kChangeYear ? Rule::Gregorian : Rule::Julian;
    const Rule used = ruleOf(DayCount(own, day));  // reads the same fields by the other rule across the change
    day = DayAt(used, DayCount(used, day));
  }
}

}  // namespace qmx::fuzz
