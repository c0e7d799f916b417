#include "platform/system/crash_report.h"

#include <windows.h>

#include <atomic>
#include <csignal>

#include "platform/system/end_line.h"

namespace qmx {
namespace {

constexpr int kSignalled = 128;
constexpr ULONG kStackForHandlers = 64 * 1024;
constexpr ULONG_PTR kLeftToHandlers = 2 * 4096;
constexpr DWORD kLongestReport = 10'000;  // milliseconds

struct Crash {
  DWORD code;
  const char* reason;
  int signal;  // the one that a POSIX system ends such a process with: run records have the same numbers everywhere
};
constexpr Crash kStackOverflow = {EXCEPTION_STACK_OVERFLOW, "A stack overflow ended the run", 11};
constexpr Crash kCrashes[] = {kStackOverflow,
                              {EXCEPTION_ACCESS_VIOLATION, "An access violation ended the run", 11},
                              {EXCEPTION_IN_PAGE_ERROR, "A memory page that could not be read ended the run", 7},
                              {EXCEPTION_ILLEGAL_INSTRUCTION, "An illegal instruction ended the run", 4},
                              {EXCEPTION_PRIV_INSTRUCTION, "A privileged instruction ended the run", 4},
                              {EXCEPTION_INT_DIVIDE_BY_ZERO, "A division by zero ended the run", 8}};
constexpr Crash kAbort = {0, "abort ended the run", 6};
constexpr Crash kOther = {0, "An exception that nothing handled ended the run", 6};

LPTOP_LEVEL_EXCEPTION_FILTER before = nullptr;
std::atomic<bool> isReported = false;

// The thread that writes the line: a crashed one may have no stack for that.
struct Reporter {
  HANDLE asked = nullptr;
  HANDLE done = nullptr;
  DWORD thread = 0;  // 0 without such a thread
};
Reporter reporter;
Crash reported = kOther;

void Write(const Crash& crash) noexcept { EndLine(crash.reason).Write(kSignalled + crash.signal); }

DWORD WINAPI WriteWhenAsked(void*) {
  WaitForSingleObject(reporter.asked, INFINITE);
  Write(reported);
  SetEvent(reporter.done);
  return 0;
}

void StartReporter() noexcept {
  reporter.asked = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  reporter.done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (!reporter.asked || !reporter.done) return;
  const HANDLE thread = CreateThread(nullptr, 0, WriteWhenAsked, nullptr, 0, &reporter.thread);
  if (thread) {
    CloseHandle(thread);
  } else {
    reporter.thread = 0;
  }
}

// Returns when the line is written, whichever thread crashed first.
void Report(const Crash& crash) noexcept {
  const bool isFirst = !isReported.exchange(true);
  if (reporter.thread == 0) {
    if (isFirst) Write(crash);
    return;
  }
  if (GetCurrentThreadId() == reporter.thread) return;  // it crashed while it wrote
  if (isFirst) {
    reported = crash;
    SetEvent(reporter.asked);
  }
  WaitForSingleObject(reporter.done, kLongestReport);
}

LONG WINAPI ReportException(EXCEPTION_POINTERS* exception) {
  const Crash* crash = &kOther;
  for (const Crash& known : kCrashes) {
    if (known.code == exception->ExceptionRecord->ExceptionCode) crash = &known;
  }
  Report(*crash);
  return before ? before(exception) : EXCEPTION_CONTINUE_SEARCH;
}

// Windows leaves at least two pages of a full stack to the handlers. With less it cannot look for one, and the thread
// ends without any. Wine 8.0 leaves less, and takes no notice of SetThreadStackGuarantee.
bool CannotBeHandled(const EXCEPTION_RECORD& exception) noexcept {
  if (exception.ExceptionCode != EXCEPTION_STACK_OVERFLOW || exception.NumberParameters < 2) return false;
  ULONG_PTR lowest = 0, highest = 0;
  GetCurrentThreadStackLimits(&lowest, &highest);
  return exception.ExceptionInformation[1] < lowest + kLeftToHandlers;
}

// Windows calls it before it looks for a handler.
LONG WINAPI ReportWhatCannotBeHandled(EXCEPTION_POINTERS* exception) {
  if (!CannotBeHandled(*exception->ExceptionRecord)) return EXCEPTION_CONTINUE_SEARCH;
  Report(kStackOverflow);
  TerminateProcess(GetCurrentProcess(), EXCEPTION_STACK_OVERFLOW);
  return EXCEPTION_CONTINUE_SEARCH;
}

// Also for raise(SIGABRT), which goes on after its handler. The C library's own status for an abort is 3, which means
// something else here.
void ReportAbort(int) {
  Report(kAbort);
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_FATAL_APP_EXIT));
}

}  // namespace

void ReportCrashes() noexcept {
  StartReporter();
  ULONG stack = kStackForHandlers;
  SetThreadStackGuarantee(&stack);  // without it the handlers have two pages
  AddVectoredExceptionHandler(1, ReportWhatCannotBeHandled);
  before = SetUnhandledExceptionFilter(ReportException);
  std::signal(SIGABRT, ReportAbort);
}

}  // namespace qmx
