#include "platform/run_records/record_time.h"

namespace qmx {

RecordTime::RecordTime(Moment moment, long offset) noexcept {
  using std::chrono::milliseconds;
  using std::chrono::seconds;
  const auto second = std::chrono::floor<seconds>(moment);
  const auto local = second + seconds(offset);
  const auto midnight = std::chrono::floor<std::chrono::days>(local);
  const std::chrono::year_month_day date(midnight);
  const std::chrono::hh_mm_ss<seconds> time(local - midnight);

  AddDigits(static_cast<int>(date.year()), 4);
  Add('-');
  AddDigits(static_cast<unsigned>(date.month()), 2);
  Add('-');
  AddDigits(static_cast<unsigned>(date.day()), 2);
  Add('T');
  AddDigits(time.hours().count(), 2);
  Add(':');
  AddDigits(time.minutes().count(), 2);
  Add(':');
  AddDigits(time.seconds().count(), 2);
  Add('.');
  AddDigits(std::chrono::floor<milliseconds>(moment - second).count(), 3);
  Add(offset < 0 ? '-' : '+');
  const long minutes = (offset < 0 ? -offset : offset) / 60;
  AddDigits(minutes / 60, 2);
  Add(':');
  AddDigits(minutes % 60, 2);
}

void RecordTime::AddDigits(std::int64_t value, int digits) noexcept {
  std::int64_t divisor = 1;
  for (int digit = 1; digit < digits; ++digit) divisor *= 10;
  for (; divisor > 0; divisor /= 10) Add(static_cast<char>('0' + value / divisor % 10));
}

}  // namespace qmx
