// Rows per second over the last few seconds: a copy that stands still shows 0.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>

namespace qmx {

class RowRate {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  // What stands at this moment; moments come in order. The rows per second, to the nearest whole number.
  std::int64_t At(Moment moment, std::int64_t rows);

 private:
  struct Sample {
    Moment moment;
    std::int64_t rows;
  };
  std::deque<Sample> samples_;  // the first one is the latest that is old enough, or the first of all
};

}  // namespace qmx
