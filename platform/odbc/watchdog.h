// Ends connections whose server has fallen silent.
//
// Each ODBC connection has a watch, and each call that may wait for the server is a WatchedCall of it, which takes four
// stores and no lock. The watchdog's thread looks at all watches ten times a second. When a call exceeds its limit, the
// watchdog shuts down the connection's sockets, so that the driver returns with an error. If the call does not return
// within five more seconds, the watchdog gives up, which ends the process.
//
// Only time in which the process runs counts, not time in which it is stopped.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/error.h"
#include "platform/system/sockets.h"

namespace qmx {

struct SilenceLimits {
  using Duration = std::chrono::milliseconds;

  Duration logIn{60'000};            // twice the driver's own time-out
  Duration beyondTimeout{30'000};    // added to a statement's own time-out
  Duration transactionEnd{600'000};  // a commit may wait for other machines
  Duration disconnect{30'000};
  Duration afterShutdown{5'000};  // for the driver to return
  Duration betweenLooks{100};

  static SilenceLimits FromEnvironment();    // $QMX_SILENCE_LIMIT in seconds, for every call
  static SilenceLimits All(Duration limit);  // the same for every call

  Duration Statement(std::chrono::seconds timeout) const;  // 0 for none, as for a time-out of 0

  std::optional<Duration> statement{};  // replaces the limit by the time-out
};

class Watch;

class Watchdog {
 public:
  using Clock = std::chrono::steady_clock;
  using GiveUp = std::function<void(const Error&)>;  // called on the watchdog's thread; should not return

  static Watchdog& Usual();  // has the limits of the environment

  // Without `giveUp` the error is printed and the process ends with status 2.
  explicit Watchdog(SilenceLimits limits, GiveUp giveUp = PrintAndEnd);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  const SilenceLimits& Limits() const { return limits_; }
  void Look(Clock::time_point now);

 private:
  friend class Watch;
  void Add(Watch& watch);  // starts the thread at the first one
  void Remove(Watch& watch);
  void LookUntilTheEnd();
  [[noreturn]] static void PrintAndEnd(const Error& error);

  SilenceLimits limits_;
  GiveUp giveUp_;
  std::mutex mutex_;
  std::condition_variable ends_;
  bool hasEnded_ = false;
  std::vector<Watch*> watches_;
  std::optional<Clock::time_point> lastLook_;
  std::thread thread_;
};

// The state of one connection for the watchdog. Calls come from any thread, one at a time.
class Watch {
 public:
  explicit Watch(Watchdog& watchdog);
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  const SilenceLimits& Limits() const { return watchdog_.Limits(); }
  void Statement(std::shared_ptr<const std::string> text);  // the statement of the next calls

  bool HasEnded() const { return silence_.load(std::memory_order_acquire) != 0; }  // the watchdog ended the connection
  Error Silence() const;  // the error that ended the connection; the exception in flight is its cause

 private:
  friend class Watchdog;
  friend class WatchedCall;
  static constexpr std::uint64_t kIdle = 0;

  // Returns the error if the driver does not return after the shutdown.
  std::optional<Error> Look(SilenceLimits::Duration passed);

  Watchdog& watchdog_;
  Sockets sockets_;
  std::atomic<const char*> action_ = "";
  std::atomic<SilenceLimits::Duration::rep> limit_ = 0;
  std::atomic<std::uint64_t> call_ = kIdle;  // the number of the running call
  std::atomic<std::uint64_t> calls_ = 0;
  std::atomic<SilenceLimits::Duration::rep> silence_ =
      0;  // how long the server was silent when the connection was ended
  std::atomic<const char*> silentAction_ = "";

  std::mutex mutex_;
  std::shared_ptr<const std::string> statement_;

  std::uint64_t seen_ = kIdle;  // by the watchdog
  SilenceLimits::Duration waited_{0};
};

// A call of the driver, from construction to destruction. `action`, a literal, completes "while ..." in the error.
class WatchedCall {
 public:
  WatchedCall(Watch& watch, const char* action, SilenceLimits::Duration limit)
      : watch_(watch), recording_(watch.sockets_) {
    const std::uint64_t call = watch.calls_.load(std::memory_order_relaxed) + 1;
    watch.calls_.store(call, std::memory_order_relaxed);
    watch.action_.store(action, std::memory_order_relaxed);
    watch.limit_.store(limit.count(), std::memory_order_relaxed);
    watch.call_.store(call, std::memory_order_release);
  }
  ~WatchedCall() { watch_.call_.store(Watch::kIdle, std::memory_order_release); }
  WatchedCall(const WatchedCall&) = delete;
  WatchedCall& operator=(const WatchedCall&) = delete;

 private:
  Watch& watch_;
  Sockets::Recording recording_;
};

}  // namespace qmx
