#include "platform/system/crash_report.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>

#include "platform/system/end_line.h"

namespace qmx {
namespace {

struct Crash {
  int signal;
  const char* reason;
  struct sigaction before;
};
std::array<Crash, 5> crashes = {{{SIGSEGV, "SIGSEGV ended the run", {}},
                                 {SIGABRT, "SIGABRT ended the run", {}},
                                 {SIGBUS, "SIGBUS ended the run", {}},
                                 {SIGFPE, "SIGFPE ended the run", {}},
                                 {SIGILL, "SIGILL ended the run", {}}}};

alignas(16) std::array<char, 64 * 1024> alternateStack;
std::atomic<pid_t> reportingProcess = 0;  // not a process that a component forks
std::atomic<bool> isReported = false;

void Report(int signal, siginfo_t* information, void*) {
  for (const Crash& crash : crashes) {
    if (crash.signal != signal) continue;
    if (getpid() == reportingProcess && !isReported.exchange(true)) EndLine(crash.reason).Write(128 + signal);
    sigaction(signal, &crash.before, nullptr);
  }
  // A fault occurs again when the handler returns. A signal that was sent does not.
  if (information->si_code <= 0) raise(signal);
}

void UseAlternateStack() noexcept {
  stack_t current{};
  if (sigaltstack(nullptr, &current) != 0 || (current.ss_flags & SS_DISABLE) == 0) return;
  stack_t stack{};
  stack.ss_sp = alternateStack.data();
  stack.ss_size = alternateStack.size();
  sigaltstack(&stack, nullptr);
}

}  // namespace

void ReportCrashes() noexcept {
  reportingProcess = getpid();
  UseAlternateStack();
  struct sigaction action {};
  action.sa_sigaction = Report;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (Crash& crash : crashes) sigaction(crash.signal, &action, &crash.before);
}

}  // namespace qmx
