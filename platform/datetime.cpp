#include "platform/datetime.h"

#include <chrono>

#include "platform/error.h"

namespace qmx {
namespace {

namespace chrono = std::chrono;

constexpr chrono::sys_days kZeroDay = chrono::year(1899) / chrono::December / 30;
constexpr std::int64_t kMostYears = 32'000;  // std::chrono counts as far

struct Civil {
  int year;
  int month;
  int day;
};

constexpr chrono::days DaysOf(std::int64_t seconds) { return chrono::floor<chrono::days>(chrono::seconds(seconds)); }

Civil CivilFromSeconds(std::int64_t seconds) {
  const chrono::year_month_day date(kZeroDay + DaysOf(seconds));
  return {int(date.year()), static_cast<int>(unsigned(date.month())), static_cast<int>(unsigned(date.day()))};
}

int SecondOfDay(std::int64_t seconds) { return static_cast<int>((chrono::seconds(seconds) - DaysOf(seconds)).count()); }

// Reads a date and time piece by piece. `good` becomes false at the first piece that does not fit.
struct DateReader {
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
  constexpr chrono::sys_days first = chrono::year(100) / chrono::January / 1;
  constexpr chrono::sys_days last = chrono::year(9999) / chrono::December / 31;
  const auto within = [](std::int64_t part, std::int64_t most) { return part >= -most && part <= most; };
  if (within(year, kMostYears / 2) && within(month, kMostYears / 2 * 12) && within(day, kMostYears * 366)) {
    const chrono::year_month carried =
        chrono::year(static_cast<int>(year)) / chrono::January + chrono::months(month - 1);
    const chrono::sys_days date = chrono::sys_days(carried / 1) + chrono::days(day - 1);
    if (date >= first && date <= last) return DateTime((date - kZeroDay).count() * kSecondsPerDay);
  }
  throw Error(errors::kOverflow, "DateTime",
              "Overflow: year " + std::to_string(year) + ", month " + std::to_string(month) + ", day " +
                  std::to_string(day) + " lies outside the years 100 to 9999.");
}

std::optional<DateTime> DateTime::Parse(std::string_view text) {
  DateReader in{text};
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

int DateTime::Year() const { return CivilFromSeconds(seconds_).year; }
int DateTime::Month() const { return CivilFromSeconds(seconds_).month; }
int DateTime::Day() const { return CivilFromSeconds(seconds_).day; }
int DateTime::Hour() const { return SecondOfDay(seconds_) / 3600; }
int DateTime::Minute() const { return SecondOfDay(seconds_) / 60 % 60; }
int DateTime::Second() const { return SecondOfDay(seconds_) % 60; }

DateTime DateTime::DatePart() const { return DateTime(DaysOf(seconds_).count() * kSecondsPerDay); }

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
