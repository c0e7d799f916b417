#include "binding/moment.h"

#include <chrono>
#include <cstdio>

namespace orvan {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / std::chrono::December / 30;

// Reads a text from its beginning.
struct Reader {
  const char* at;
  const char* end;

  template <int digits>  // at most
  bool Number(int& number) {
    const char* const start = at;
    number = 0;
    for (int i = 0; i < digits && at != end && *at >= '0' && *at <= '9'; ++i) number = number * 10 + (*at++ - '0');
    return at != start;
  }

  bool Mark(char mark) {
    if (at == end || *at != mark) return false;
    ++at;
    return true;
  }
};

}  // namespace

Moment Moment::FromSeconds(std::int64_t seconds) {
  std::int64_t days = seconds / kSecondsPerDay;
  if (seconds % kSecondsPerDay < 0) --days;
  const std::chrono::year_month_day date(kDayZero + std::chrono::days(days));
  const int rest = static_cast<int>(seconds - days * kSecondsPerDay);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          rest / 3600,
          rest / 60 % 60,
          rest % 60};
}

std::int64_t Moment::Seconds() const {
  const std::chrono::sys_days first =
      std::chrono::year(year) / std::chrono::month(static_cast<unsigned>(month)) / std::chrono::day(1);
  const std::int64_t days = (first - kDayZero).count() + day - 1;
  return days * kSecondsPerDay + hour * 3600 + minute * 60 + second;
}

std::optional<Moment> Moment::Parse(std::string_view text) {
  Moment moment;
  Reader in{text.data(), text.data() + text.size()};
  if (!in.Number<4>(moment.year) || !in.Mark('-')) return std::nullopt;
  if (!in.Number<2>(moment.month) || !in.Mark('-')) return std::nullopt;
  if (!in.Number<2>(moment.day)) return std::nullopt;
  if (in.Mark(' ') || in.Mark('T')) {
    if (!in.Number<2>(moment.hour) || !in.Mark(':')) return std::nullopt;
    if (!in.Number<2>(moment.minute)) return std::nullopt;
    if (in.Mark(':') && !in.Number<2>(moment.second)) return std::nullopt;
  }
  const bool inRange = moment.month >= 1 && moment.month <= 12 && moment.day >= 1 && moment.day <= 31 &&
                       moment.hour <= 24 && moment.minute <= 59 && moment.second <= 59;
  if (in.at != in.end || !inRange) return std::nullopt;
  if (moment.day <= 28 && moment.hour < 24) return moment;
  return FromSeconds(moment.Seconds());
}

std::string Moment::DateText() const {
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
  return text;
}

std::string Moment::Text() const {
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", year, month, day, hour, minute, second);
  return text;
}

}  // namespace orvan
