#include "platform/datetime.h"

#include "platform/error.h"

namespace qmx {
namespace {

constexpr std::int64_t kZeroDay = -25569;  // 1899-12-30, counted from 1970-01-01
constexpr std::int64_t kFurthest =
    100'000'000;  // parts beyond this leave the years anyway, and would overflow on the way

struct Civil {
  std::int64_t year;
  int month;
  int day;
};

constexpr std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

// Days since 1970-01-01 of a day in the proleptic Gregorian calendar. Years are taken to begin in March, so that the
// leap day is the last of its year.
constexpr std::int64_t DaysFromCivil(std::int64_t year, int month, std::int64_t day) {
  if (month <= 2) --year;
  const std::int64_t era = FloorDivide(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

Civil CivilFromDays(std::int64_t days) {
  days += 719468;
  const std::int64_t era = FloorDivide(days, 146097);
  const std::int64_t dayOfEra = days - era * 146097;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
  const int day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  const int month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

std::int64_t DayNumber(std::int64_t seconds) { return FloorDivide(seconds, DateTime::kSecondsPerDay); }

Civil CivilFromSeconds(std::int64_t seconds) { return CivilFromDays(DayNumber(seconds) + kZeroDay); }

int SecondOfDay(std::int64_t seconds) {
  return static_cast<int>(seconds - DayNumber(seconds) * DateTime::kSecondsPerDay);
}

// Reads a date and time piece by piece; once a piece does not fit, `good` stays false.
struct Reader {
  std::string_view rest;
  bool good = true;

  int Number(std::size_t atLeast, std::size_t atMost, int low, int high) {
    std::size_t length = 0;
    int value = 0;
    while (length < rest.size() && length < atMost && rest[length] >= '0' && rest[length] <= '9') {
      value = value * 10 + (rest[length++] - '0');
    }
    rest.remove_prefix(length);
    if (length < atLeast || value < low || value > high) good = false;
    return value;
  }
  bool Accept(char wanted) {
    if (rest.empty() || rest.front() != wanted) return false;
    rest.remove_prefix(1);
    return true;
  }
  void Expect(char wanted) {
    if (!Accept(wanted)) good = false;
  }
};

void PutTwo(char* to, std::int64_t number) {
  to[0] = static_cast<char>('0' + number / 10);
  to[1] = static_cast<char>('0' + number % 10);
}

}  // namespace

DateTime DateTime::FromDate(std::int64_t year, std::int64_t month, std::int64_t day) {
  const auto beyond = [](std::int64_t part) { return part < -kFurthest || part > kFurthest; };
  if (!beyond(year) && !beyond(month) && !beyond(day)) {
    const std::int64_t carried = FloorDivide(month - 1, 12);
    const std::int64_t days = DaysFromCivil(year + carried, static_cast<int>(month - carried * 12), 1) + day - 1;
    constexpr std::int64_t first = DaysFromCivil(100, 1, 1);
    constexpr std::int64_t last = DaysFromCivil(9999, 12, 31);
    if (days >= first && days <= last) return DateTime((days - kZeroDay) * kSecondsPerDay);
  }
  throw Error(errors::kOverflow, "DateTime",
              "Overflow: year " + std::to_string(year) + ", month " + std::to_string(month) + ", day " +
                  std::to_string(day) + " lies outside the years 100 to 9999.");
}

std::optional<DateTime> DateTime::Parse(std::string_view text) {
  Reader in{text};
  const int year = in.Number(4, 4, 100, 9999);
  in.Expect('-');
  const int month = in.Number(1, 2, 1, 12);
  in.Expect('-');
  const int day = in.Number(1, 2, 1, 31);
  int hour = 0;
  int minute = 0;
  int second = 0;
  if (in.good && !in.rest.empty()) {
    if (!in.Accept('T')) in.Expect(' ');
    hour = in.Number(1, 2, 0, 23);
    in.Expect(':');
    minute = in.Number(2, 2, 0, 59);
    if (in.Accept(':')) {
      second = in.Number(2, 2, 0, 59);
      if (in.Accept('.')) {
        in.good = in.good && !in.rest.empty() && in.rest.find_first_not_of('0') == std::string_view::npos;
        in.rest = {};
      }
    }
  }
  if (!in.good || !in.rest.empty()) return std::nullopt;
  return FromDate(year, month, day).PlusTime(hour, minute, second);
}

int DateTime::Year() const { return static_cast<int>(CivilFromSeconds(seconds_).year); }
int DateTime::Month() const { return CivilFromSeconds(seconds_).month; }
int DateTime::Day() const { return CivilFromSeconds(seconds_).day; }
int DateTime::Hour() const { return SecondOfDay(seconds_) / 3600; }
int DateTime::Minute() const { return SecondOfDay(seconds_) / 60 % 60; }
int DateTime::Second() const { return SecondOfDay(seconds_) % 60; }

DateTime DateTime::DatePart() const { return DateTime(DayNumber(seconds_) * kSecondsPerDay); }

std::string DateTime::ToText() const {
  std::string text = ToFullText();
  if (SecondOfDay(seconds_) == 0) text.resize(text.size() - std::string_view(" HH:MM:SS").size());
  return text;
}

std::string DateTime::ToFullText() const {
  const Civil date = CivilFromSeconds(seconds_);
  const int time = SecondOfDay(seconds_);
  char text[] = "YYYY-MM-DD HH:MM:SS";
  PutTwo(text, date.year / 100);
  PutTwo(text + 2, date.year % 100);
  PutTwo(text + 5, date.month);
  PutTwo(text + 8, date.day);
  PutTwo(text + 11, time / 3600);
  PutTwo(text + 14, time / 60 % 60);
  PutTwo(text + 17, time % 60);
  return date.year <= 9999 ? text : std::to_string(date.year) + (text + 4);
}

}  // namespace qmx
