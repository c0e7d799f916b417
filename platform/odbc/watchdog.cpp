#include "platform/odbc/watchdog.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "platform/system/end_at_once.h"
#include "platform/system/environment.h"
#include "platform/system/standard_error.h"

namespace qmx {
namespace {

using Duration = SilenceLimits::Duration;

constexpr int kStatus = 2;  // as after a lost connection

constexpr const char* kAdvice =
    "Check the server and the network; a table that stays in progress is released with \"qmxadmin release TABLE\".";

// A process that was stopped for an hour has not waited for an hour, so one look adds no more than this many pauses.
constexpr int kMostPauses = 10;

std::string SilenceText(Duration silence, const std::string& action) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(silence).count();
  return "The server did not answer for " + std::to_string(seconds) + " seconds while " + action;
}

}  // namespace

SilenceLimits SilenceLimits::FromEnvironment() {
  const std::string text = EnvironmentVariable("QMX_SILENCE_LIMIT").value_or("");
  if (text.empty()) return {};
  std::int32_t seconds = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size() || seconds < 1) {
    throw Error(errors::kInvalidCall, "ODBC",
                "QMX_SILENCE_LIMIT must be a whole number of seconds from 1 on, and is \"" + text + "\".");
  }
  return All(std::chrono::seconds(seconds));
}

SilenceLimits SilenceLimits::All(Duration limit) {
  SilenceLimits limits;
  limits.logIn = limits.transactionEnd = limits.disconnect = limit;
  limits.statement = limit;
  return limits;
}

Duration SilenceLimits::Statement(std::chrono::seconds timeout) const {
  if (statement) return *statement;
  return timeout == std::chrono::seconds(0) ? Duration(0) : timeout + beyondTimeout;
}

// Never destroyed, because connections may be destroyed later when the process ends.
Watchdog& Watchdog::Usual() {
  static Watchdog& usual = *new Watchdog(SilenceLimits::FromEnvironment());
  return usual;
}

Watchdog::Watchdog(SilenceLimits limits, GiveUp giveUp) : limits_(limits), giveUp_(std::move(giveUp)) {}

Watchdog::~Watchdog() {
  {
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
  }
  ends_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void Watchdog::Add(Watch& watch) {
  const std::lock_guard lock(mutex_);
  watches_.push_back(&watch);
  if (!thread_.joinable()) thread_ = std::thread([this] { LookUntilTheEnd(); });
}

void Watchdog::Remove(Watch& watch) {
  const std::lock_guard lock(mutex_);
  std::erase(watches_, &watch);
}

void Watchdog::PrintAndEnd(const Error& error) {
  WriteToStandardError({DescribeChain(error), "\n"});
  EndAtOnce(kStatus);
}

void Watchdog::LookUntilTheEnd() {
  std::unique_lock lock(mutex_);
  while (!ends_.wait_for(lock, limits_.betweenLooks, [this] { return hasEnded_; })) {
    lock.unlock();
    Look(Clock::now());
    lock.lock();
  }
}

void Watchdog::Look(Clock::time_point now) {
  std::optional<Error> hopeless;
  {
    const std::lock_guard lock(mutex_);
    const auto passed = std::chrono::duration_cast<Duration>(now - std::exchange(lastLook_, now).value_or(now));
    for (Watch* const watch : watches_) {
      if (auto error = watch->Look(std::min(passed, limits_.betweenLooks * kMostPauses))) hopeless = std::move(error);
    }
  }
  if (hopeless) giveUp_(*hopeless);
}

Watch::Watch(Watchdog& watchdog) : watchdog_(watchdog) { watchdog_.Add(*this); }

Watch::~Watch() { watchdog_.Remove(*this); }

void Watch::Statement(std::shared_ptr<const std::string> text) {
  const std::lock_guard lock(mutex_);
  statement_ = std::move(text);
}

std::optional<Error> Watch::Look(Duration passed) {
  const std::uint64_t call = call_.load(std::memory_order_acquire);
  if (call == kIdle || call != std::exchange(seen_, call)) {
    waited_ = Duration(0);
    return std::nullopt;
  }
  waited_ += passed;
  const Duration limit(limit_.load(std::memory_order_relaxed));
  const char* const action = action_.load(std::memory_order_relaxed);
  if (limit == Duration(0) || waited_ < limit) return std::nullopt;
  if (!HasEnded()) {
    silentAction_.store(action, std::memory_order_relaxed);
    silence_.store(limit.count(), std::memory_order_release);
  }
  sockets_.ShutDown();  // at every look: the driver may try another address
  const Duration longest = limit + Limits().afterShutdown;
  if (waited_ < longest) return std::nullopt;
  Error error(
      errors::kProviderUnspecified, "ODBC",
      SilenceText(longest, action) + ", and the driver did not return when its connection was ended. " + kAdvice);
  const std::lock_guard lock(mutex_);
  if (statement_) error.With("statement", *statement_);
  return error;
}

Error Watch::Silence() const {
  const Duration silence(silence_.load(std::memory_order_acquire));
  Error error(errors::kProviderUnspecified, "ODBC",
              SilenceText(silence, silentAction_.load(std::memory_order_relaxed)) +
                  ", so the program ended the connection. " + kAdvice);
  return error.With("SQLSTATE", "08S01");  // the connection is lost
}

}  // namespace qmx
