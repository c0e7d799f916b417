// The system's steady clock, in which pauses pass at once.
#pragma once

#include <atomic>
#include <chrono>

#include "platform/steady_clock.h"

namespace qmx::test {

class SkippingClock : public SteadyClock {
 public:
  TimePoint Now() override { return SteadyClock::Now() + Skipped(); }
  void Sleep(std::chrono::microseconds time) override { skipped_ += time.count(); }
  void WaitUntil(TimePoint due, std::condition_variable& changed, Lock& lock) override {
    SteadyClock::WaitUntil(due - Skipped(), changed, lock);
  }

  std::chrono::microseconds Skipped() const { return std::chrono::microseconds(skipped_); }

 private:
  std::atomic<std::int64_t> skipped_ = 0;
};

}  // namespace qmx::test
