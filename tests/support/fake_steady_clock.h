// A steady clock that the test moves on, and that knows which threads wait in it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <stdexcept>
#include <vector>

#include "platform/steady_clock.h"

namespace qmx::test {

class FakeSteadyClock : public SteadyClock {
 public:
  TimePoint Now() override {
    const std::lock_guard guard(mutex_);
    return now_;
  }
  void Wait(std::condition_variable& changed, Lock& lock) override { WaitUntil(TimePoint::max(), changed, lock); }
  void WaitUntil(TimePoint due, std::condition_variable& changed, Lock& lock) override {
    std::unique_lock guard(mutex_);
    if (now_ >= due) return;
    const auto waiter = waiters_.insert(waiters_.end(), {&changed, lock.mutex()});
    ++waits_;
    waited_.notify_all();
    guard.unlock();
    changed.wait(lock);
    guard.lock();
    waiters_.erase(waiter);
  }

  void Sleep(std::chrono::microseconds time) override {
    const std::lock_guard guard(mutex_);
    now_ += time;
    sleeps.push_back(time);
  }

  std::vector<std::chrono::microseconds> sleeps;  // of the threads that called Sleep

  // Moves on without regard to threads that wait.
  void Pass(std::chrono::milliseconds time) {
    const std::lock_guard guard(mutex_);
    now_ += time;
  }

  // Moves on, and returns when the one thread that waits has done what is due and waits again.
  void PassWhileAThreadWaits(std::chrono::milliseconds time) {
    std::unique_lock guard(mutex_);
    Await(guard, [&] { return !waiters_.empty(); });
    now_ += time;
    const Waiter waiter = waiters_.front();
    const int before = waits_;
    guard.unlock();
    { const std::lock_guard isWaiting(*waiter.mutex); }
    waiter.changed->notify_all();
    guard.lock();
    Await(guard, [&] { return waits_ > before; });
  }

  void AwaitWaitingThread() {
    std::unique_lock guard(mutex_);
    Await(guard, [&] { return !waiters_.empty(); });
  }

 private:
  struct Waiter {
    std::condition_variable* changed;
    std::mutex* mutex;
  };

  template <typename Condition>
  void Await(std::unique_lock<std::mutex>& guard, Condition&& condition) {
    if (!waited_.wait_for(guard, std::chrono::seconds(60), condition)) throw std::runtime_error("No thread waits.");
  }

  std::mutex mutex_;
  std::condition_variable waited_;
  TimePoint now_ = TimePoint{} + std::chrono::hours(24);
  std::list<Waiter> waiters_;
  int waits_ = 0;
};

}  // namespace qmx::test
