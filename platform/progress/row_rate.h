// Rows per second over the last few seconds. A copy that does not advance shows 0.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>

namespace qmx {

class RowRate {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  // Takes the number of rows at a moment, in order of time. Returns the rows per second, to the nearest whole number.
  std::int64_t At(Moment moment, std::int64_t rows);

 private:
  struct Sample {
    Moment moment;
    std::int64_t rows;
  };
  std::deque<Sample> samples_;  // the first is the latest that is old enough, or the oldest
};

}  // namespace qmx
