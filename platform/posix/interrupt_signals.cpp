#include "platform/system/interrupt_signals.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>

#include "platform/interruption.h"
#include "platform/system/standard_error.h"

namespace qmx {
namespace {

constexpr std::int64_t kTogether = 50'000'000;  // nanoseconds

struct Interrupt {
  int signal;
  const char* name;
  struct sigaction before;
};
std::array<Interrupt, 3> interrupts = {{{SIGINT, "SIGINT", {}}, {SIGTERM, "SIGTERM", {}}, {SIGHUP, "SIGHUP", {}}}};

std::atomic<const char*> sentence = nullptr;
std::atomic<pid_t> interruptedProcess = 0;
std::atomic<std::int64_t> firstAt = 0;  // 0 before the first

std::int64_t Now() noexcept {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

void EndBy(int signal) noexcept {
  struct sigaction byDefault {};
  byDefault.sa_handler = SIG_DFL;
  sigaction(signal, &byDefault, nullptr);
  raise(signal);  // ends the process when the handler returns
}

void Take(int signal) {
  const int errorBefore = errno;
  const std::int64_t now = Now();
  std::int64_t first = 0;
  if (getpid() != interruptedProcess) {
    EndBy(signal);  // a process that a component forked
  } else if (firstAt.compare_exchange_strong(first, now)) {
    for (const Interrupt& interrupt : interrupts) {
      if (interrupt.signal != signal) continue;
      Interruption::Request(interrupt.name);
      WriteToStandardError({interrupt.name, ": ", sentence.load(), "\n"});
    }
  } else if (now - first > kTogether) {
    WriteToStandardError({});  // clears the progress line
    EndBy(signal);
  }
  errno = errorBefore;
}

}  // namespace

InterruptSignals::InterruptSignals(const char* whatHappens) noexcept {
  sentence = whatHappens;
  interruptedProcess = getpid();
  firstAt = 0;
  struct sigaction action {};
  action.sa_handler = Take;
  action.sa_flags = SA_RESTART;  // a component's or a driver's system call continues
  sigemptyset(&action.sa_mask);
  for (const Interrupt& interrupt : interrupts) sigaddset(&action.sa_mask, interrupt.signal);
  for (Interrupt& interrupt : interrupts) {
    sigaction(interrupt.signal, nullptr, &interrupt.before);
    if (interrupt.before.sa_handler != SIG_IGN) sigaction(interrupt.signal, &action, nullptr);
  }
}

InterruptSignals::~InterruptSignals() {
  for (const Interrupt& interrupt : interrupts) sigaction(interrupt.signal, &interrupt.before, nullptr);
}

}  // namespace qmx
