#include "platform/progress/row_rate.h"

#include <cmath>

namespace qmx {
namespace {

constexpr std::chrono::seconds kSpan{3};

}  // namespace

std::int64_t RowRate::At(Moment moment, std::int64_t rows) {
  samples_.push_back({moment, rows});
  while (samples_.size() > 2 && moment - samples_[1].moment >= kSpan) samples_.pop_front();
  const std::chrono::duration<double> seconds = moment - samples_.front().moment;
  if (seconds.count() <= 0) return 0;
  return std::llround(static_cast<double>(rows - samples_.front().rows) / seconds.count());
}

}  // namespace qmx
