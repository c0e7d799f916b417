// The time that passes, for threads that wait.
//
// The program has the system's steady clock. Tests derive a clock that they set.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace qmx {

class SteadyClock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  using Lock = std::unique_lock<std::mutex>;

  static SteadyClock& OfTheSystem();

  virtual ~SteadyClock() = default;
  virtual TimePoint Now() { return std::chrono::steady_clock::now(); }
  virtual void Sleep(std::chrono::microseconds time) { std::this_thread::sleep_for(time); }

  // Both return when `changed` is notified, and may return early for no reason.
  virtual void Wait(std::condition_variable& changed, Lock& lock) { changed.wait(lock); }
  virtual void WaitUntil(TimePoint due, std::condition_variable& changed, Lock& lock) { changed.wait_until(lock, due); }
};

}  // namespace qmx
