#include "platform/com/ole_date.h"

#include <cmath>
#include <string>

#include "platform/error.h"
#include "platform/variant.h"

namespace qmx {
namespace {

constexpr auto kSecondsPerDay = static_cast<double>(DateTime::kSecondsPerDay);

}  // namespace

DateTime FromOleDate(double days) {
  const double whole = std::trunc(days);
  const double seconds = whole * kSecondsPerDay + RoundHalfEven(std::fabs(days - whole) * kSecondsPerDay);
  static const DateTime first = DateTime::FromDate(100, 1, 1);
  static const DateTime last = DateTime::FromDate(9999, 12, 31).PlusTime(23, 59, 59);
  if (seconds >= static_cast<double>(first.Seconds()) && seconds <= static_cast<double>(last.Seconds())) {
    return DateTime::FromSeconds(static_cast<std::int64_t>(seconds));
  }
  throw Error(
      errors::kOverflow, "COM",
      "Overflow: the date-time of day number " + Variant(days).ToText() + " lies outside the years 100 to 9999.");
}

double ToOleDate(DateTime moment) {
  std::int64_t days = moment.Seconds() / DateTime::kSecondsPerDay;
  std::int64_t seconds = moment.Seconds() % DateTime::kSecondsPerDay;
  if (seconds < 0) {
    --days;
    seconds += DateTime::kSecondsPerDay;
  }
  const double fraction = static_cast<double>(seconds) / kSecondsPerDay;
  const auto whole = static_cast<double>(days);
  return days < 0 ? whole - fraction : whole + fraction;
}

}  // namespace qmx
