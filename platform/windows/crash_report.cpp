#include "platform/system/crash_report.h"

#include <windows.h>

#include <atomic>
#include <csignal>

#include "platform/system/end_line.h"

namespace qmx {
namespace {

constexpr int kSignalled = 128;
constexpr ULONG kStackForTheReport = 64 * 1024;

struct Crash {
  DWORD code;
  const char* reason;
  int signal;  // the one that a POSIX system ends such a process with: run records have the same numbers everywhere
};
constexpr Crash kCrashes[] = {{EXCEPTION_ACCESS_VIOLATION, "An access violation ended the run", 11},
                              {EXCEPTION_IN_PAGE_ERROR, "A memory page that could not be read ended the run", 7},
                              {EXCEPTION_STACK_OVERFLOW, "A stack overflow ended the run", 11},
                              {EXCEPTION_ILLEGAL_INSTRUCTION, "An illegal instruction ended the run", 4},
                              {EXCEPTION_PRIV_INSTRUCTION, "A privileged instruction ended the run", 4},
                              {EXCEPTION_INT_DIVIDE_BY_ZERO, "A division by zero ended the run", 8}};
constexpr Crash kOther = {0, "An exception that nothing handled ended the run", 6};

LPTOP_LEVEL_EXCEPTION_FILTER before = nullptr;
std::atomic<bool> isReported = false;

void Report(const char* reason, int signal) noexcept {
  if (!isReported.exchange(true)) EndLine(reason).Write(kSignalled + signal);
}

LONG WINAPI ReportException(EXCEPTION_POINTERS* exception) {
  Crash crash = kOther;
  for (const Crash& known : kCrashes) {
    if (known.code == exception->ExceptionRecord->ExceptionCode) crash = known;
  }
  Report(crash.reason, crash.signal);
  return before ? before(exception) : EXCEPTION_CONTINUE_SEARCH;
}

// Also for raise(SIGABRT), which goes on after its handler. The C library's own status for an abort is 3, which means
// something else here.
void ReportAbort(int) {
  Report("abort ended the run", 6);
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_FATAL_APP_EXIT));
}

}  // namespace

void ReportCrashes() noexcept {
  ULONG stack = kStackForTheReport;
  SetThreadStackGuarantee(&stack);
  before = SetUnhandledExceptionFilter(ReportException);
  std::signal(SIGABRT, ReportAbort);
}

}  // namespace qmx
