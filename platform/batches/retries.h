// Tries work again that the database took back wholly and asks to try again (retryable.h).
//
// The pauses between the attempts double from 10 ms to 500 ms, each shortened by a random part of up to a half, so that
// two programs that hinder each other do not meet again. No attempt begins when the statement's time-out has passed
// since the first one began, or when a signal asks the program to end. The error then says how often it was tried.
// Several threads may use one object, but the limit is set while no other thread does.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <random>

#include "platform/error.h"
#include "platform/retryable.h"
#include "platform/steady_clock.h"

namespace qmx {

using RetryCount = std::atomic<std::int64_t>;

class Retries {
 public:
  static constexpr std::chrono::milliseconds kFirstPause{10};
  static constexpr std::chrono::milliseconds kLongestPause{500};
  static constexpr std::chrono::seconds kUsualLimit{30};

  explicit Retries(SteadyClock& clock, RetryCount* total = nullptr) : clock_(clock), total_(total) {}  // borrowed

  void Limit(std::chrono::seconds limit) { limit_ = limit; }  // 0 for none
  std::int64_t Count() const { return count_; }               // of retries; the total grows with it

  // Returns what the first successful attempt returns. A failed one must leave nothing behind.
  template <typename Attempt>
  decltype(auto) Run(Attempt&& attempt) {
    Series series{clock_.Now()};
    for (;;) {
      try {
        return attempt();
      } catch (const Error& error) {
        if (!AsksToTryAgain(error)) throw;
        PauseAfter(error, series);
      }
    }
  }

  // Counts work that its owner tries again by itself.
  void CountIfAsked(const Error& error) {
    if (AsksToTryAgain(error)) CountOne();
  }

 private:
  struct Series {
    SteadyClock::TimePoint begin;
    std::chrono::milliseconds pause = kFirstPause;
    int retries = 0;
  };

  void PauseAfter(const Error& error, Series& series);  // raises if there may be no other attempt
  void CountOne() {
    ++count_;
    if (total_) ++*total_;
  }
  std::chrono::microseconds Shortened(std::chrono::microseconds pause);

  SteadyClock& clock_;
  RetryCount* total_;
  std::chrono::seconds limit_ = kUsualLimit;
  RetryCount count_ = 0;
  std::mutex mutex_;  // of random_
  std::minstd_rand random_{std::random_device{}()};
};

}  // namespace qmx
