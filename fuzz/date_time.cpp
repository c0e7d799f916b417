// Civil dates and times: what std::chrono says, and what a plain reader finds in a text. The first line is a text.
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>

#include "fuzz/input.h"
#include "fuzz/plain_dates.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/datetime.h"

namespace qmx::fuzz {
namespace {

namespace chrono = std::chrono;

constexpr chrono::sys_days kZero = chrono::year(1899) / 12 / 30;

std::int64_t CountFromZero(std::int64_t year, std::int64_t month, std::int64_t day) {
  static const std::int64_t zero = DayCount(Rule::Gregorian, {1899, 11, 30});
  return DayCount(Rule::Gregorian, {year, month - 1, day}) - zero;
}

std::string PlainText(std::int64_t seconds, bool isFull) {
  const chrono::sys_seconds moment = kZero + chrono::seconds(seconds);
  const auto date = chrono::floor<chrono::days>(moment);
  const chrono::year_month_day day(date);
  const chrono::hh_mm_ss time(moment - date);
  char text[60];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", int(day.year()), unsigned(day.month()), unsigned(day.day()));
  std::string shown = text;
  if (!isFull && moment == date) return shown;
  std::snprintf(text, sizeof text, " %02d:%02d:%02d", static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
  return shown + text;
}

void HasTheParts(DateTime moment) {
  const std::string full = PlainText(moment.Seconds(), true);
  RequireSame(moment.ToFullText(), full, "the full text of a moment");
  RequireSame(moment.ToText(), PlainText(moment.Seconds(), false), "the text of a moment");
  RequireSame(moment.DatePart().ToText(), full.substr(0, full.size() - 9), "the day of a moment");
  char parts[80];
  std::snprintf(parts, sizeof parts, "%04d-%02d-%02d %02d:%02d:%02d", moment.Year(), moment.Month(), moment.Day(),
                moment.Hour(), moment.Minute(), moment.Second());
  RequireSame(parts, full, "the parts of a moment");
  if (moment.Year() <= 9999) Require(DateTime::Parse(moment.ToText()) == moment, "reading back " + moment.ToText());
}

// Parts of 16 bits, as components give them.
void BuildsDates(std::int64_t year, std::int64_t month, std::int64_t day, const std::array<std::int64_t, 3>& time) {
  static const std::int64_t first = CountFromZero(100, 1, 1);
  static const std::int64_t last = CountFromZero(9999, 12, 31);
  const std::int64_t count = CountFromZero(year, month, day);
  const bool isWithin = count >= first && count <= last;
  DateTime date;
  const std::int32_t raised = NumberRaised([&] { date = DateTime::FromDate(year, month, day); });
  const std::string shown = std::to_string(year) + "/" + std::to_string(month) + "/" + std::to_string(day);
  Require(raised == (isWithin ? 0 : errors::kOverflow), "whether there is a date " + shown);
  if (!isWithin) return;
  Require(date.Seconds() == count * 86400, "the date " + shown);
  const DateTime moment = date.PlusTime(time[0], time[1], time[2]);
  Require(moment.Seconds() == count * 86400 + time[0] * 3600 + time[1] * 60 + time[2], "the time of day on " + shown);
  Require(moment.PlusDays(month).Seconds() == moment.Seconds() + month * 86400, "days later than " + shown);
  if (moment.Year() >= 100) HasTheParts(moment);
}

class PlainReader {
 public:
  explicit PlainReader(const std::string& text) : text_(text) {}

  // Nothing for a text of another form.
  std::optional<std::int64_t> Seconds() {
    const auto year = Number(4, 4);
    if (!year || !Is("-")) return std::nullopt;
    const auto month = Number(1, 2);
    if (!month || !Is("-")) return std::nullopt;
    const auto day = Number(1, 2);
    if (!day || *year < 100 || *month < 1 || *month > 12 || *day < 1 || *day > 31) return std::nullopt;
    std::int64_t time = 0;
    if (at_ < text_.size()) {
      if (!Is(" ") && !Is("T")) return std::nullopt;
      const auto hour = Number(1, 2);
      if (!hour || *hour > 23 || !Is(":")) return std::nullopt;
      const auto minute = Number(2, 2);
      if (!minute || *minute > 59) return std::nullopt;
      time = *hour * 3600 + *minute * 60;
      if (Is(":")) {
        const auto second = Number(2, 2);
        if (!second || *second > 59) return std::nullopt;
        time += *second;
        if (Is(".") && !ZerosToTheEnd()) return std::nullopt;
      }
    }
    if (at_ != text_.size()) return std::nullopt;
    return CountFromZero(*year, *month, *day) * 86400 + time;
  }

 private:
  std::optional<std::int64_t> Number(std::size_t least, std::size_t most) {
    std::string digits;
    while (at_ < text_.size() && digits.size() < most && text_[at_] >= '0' && text_[at_] <= '9') digits += text_[at_++];
    if (digits.size() < least) return std::nullopt;
    return std::stoll(digits);
  }
  bool Is(const std::string& wanted) {
    if (text_.compare(at_, wanted.size(), wanted) != 0) return false;
    at_ += wanted.size();
    return true;
  }
  bool ZerosToTheEnd() {
    if (at_ == text_.size()) return false;
    while (Is("0")) continue;
    return at_ == text_.size();
  }

  std::string text_;
  std::size_t at_ = 0;
};

void ReadsTexts(const std::string& text) {
  const std::optional<std::int64_t> expected = PlainReader(text).Seconds();
  const std::optional<DateTime> read = DateTime::Parse(text);
  Require(read.has_value() == expected.has_value(), "whether " + Shown(text) + " is a moment");
  if (read) Require(read->Seconds() == *expected, "the moment " + Shown(text));
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  ReadsTexts(input.Line());
  const auto year = input.Next<std::int16_t>();
  const auto month = input.Next<std::int16_t>();
  const auto day = input.Next<std::int16_t>();
  std::array<std::int64_t, 3> time{};
  for (std::int64_t& part : time) part = input.Next<std::int16_t>();
  BuildsDates(year + 1900, month + 1, day, time);
  BuildsDates(1900 + year % 200, 1 + month % 12, 1 + day % 31, time);
  BuildsDates(year, month % 120, day, time);
  // Numbers of any size: a date is right, or refused.
  std::array<std::int64_t, 3> wide{};
  for (std::int64_t& part : wide) part = input.Next<std::int64_t>();
  const std::int32_t raised = NumberRaised([&] { HasTheParts(qmx::DateTime::FromDate(wide[0], wide[1], wide[2])); });
  Require(raised == 0 || raised == qmx::errors::kOverflow, "a date outside the range is an overflow");
  return 0;
}
