// A thread that does work when it is due and sleeps in between.
//
// It shares its owner's lock and condition, so the owner wakes it early by notifying the condition.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/steady_clock.h"

namespace qmx {

class HelperThread {
 public:
  // Does at most one thing that is due, with the lock held; may unlock it meanwhile. Returns when to call it again,
  // or nothing if it has to be woken first.
  using Work = std::function<std::optional<SteadyClock::TimePoint>(SteadyClock::Lock&)>;

  HelperThread(SteadyClock& clock, std::mutex& mutex, std::condition_variable& changed, Work work);  // borrowed
  ~HelperThread() { Stop(); }
  HelperThread(const HelperThread&) = delete;
  HelperThread& operator=(const HelperThread&) = delete;

  void Wake();  // starts the thread at the first call; the caller holds the lock
  void Stop();  // ends the thread for good once its work returns; the caller does not hold the lock

 private:
  void Run();

  SteadyClock& clock_;
  std::mutex& mutex_;
  std::condition_variable& changed_;
  Work work_;
  bool sleeps_ = false;  // until it is woken
  bool stops_ = false;
  std::thread thread_;
};

}  // namespace qmx
