// The time that the running statement has left, by the monotonic clock.
#pragma once

#include <algorithm>
#include <chrono>

namespace qmx {

class Deadline {
 public:
  using Clock = std::chrono::steady_clock;

  void Limit(std::chrono::seconds limit) { limit_ = limit; }  // 0 for none
  std::chrono::seconds Limit() const { return limit_; }
  void Start() { start_ = Clock::now(); }
  bool HasPassed() const { return limit_.count() > 0 && Clock::now() - start_ >= limit_; }

  // Returns the given time, or the time left if that is less.
  Clock::duration AtMost(Clock::duration time) const {
    if (limit_.count() == 0) return time;
    return std::clamp<Clock::duration>(start_ + limit_ - Clock::now(), Clock::duration::zero(), time);
  }

 private:
  std::chrono::seconds limit_{30};
  Clock::time_point start_ = Clock::now();
};

}  // namespace qmx
