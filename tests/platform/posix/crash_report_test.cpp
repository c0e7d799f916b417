// Crashes: one line, and then the signal's own end.
#include "platform/system/crash_report.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <thread>

#include "platform/running_call.h"

namespace qmx::test {
namespace {

using testing::KilledBySignal;

// With the signals' own defaults, not the sanitizers' handlers.
template <typename Crash>
void CrashInACall(Crash crash) {
  for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL}) std::signal(signal, SIG_DFL);
  ReportCrashes();
  const RunningCall running("A.Manager", "List");
  crash();
}

TEST(CrashReport, IsOneLineForEachOfTheSignalsWhichThenEndsTheProcess) {
  const auto raised = [](int signal) { CrashInACall([signal] { raise(signal); }); };
  EXPECT_EXIT(raised(SIGSEGV), KilledBySignal(SIGSEGV), "^SIGSEGV ended the run during List of A.Manager\n$");
  EXPECT_EXIT(raised(SIGABRT), KilledBySignal(SIGABRT), "^SIGABRT ended the run during List of A.Manager\n$");
  EXPECT_EXIT(raised(SIGBUS), KilledBySignal(SIGBUS), "^SIGBUS ended the run during List of A.Manager\n$");
  EXPECT_EXIT(raised(SIGFPE), KilledBySignal(SIGFPE), "^SIGFPE ended the run during List of A.Manager\n$");
  EXPECT_EXIT(raised(SIGILL), KilledBySignal(SIGILL), "^SIGILL ended the run during List of A.Manager\n$");
}

TEST(CrashReport, WorksOnEveryThread) {
  EXPECT_EXIT(CrashInACall([] { std::thread([] { raise(SIGSEGV); }).join(); }), KilledBySignal(SIGSEGV),
              "^SIGSEGV ended the run during List of A.Manager\n$");
}

TEST(CrashReport, ReportsAnExceptionThatNothingCatches) {
  EXPECT_EXIT(CrashInACall([] { std::terminate(); }), KilledBySignal(SIGABRT),
              "SIGABRT ended the run during List of A.Manager\n$");
}

TEST(CrashReport, LeavesTheEndToAHandlerThatWasThereBefore) {
  const auto crash = [] {
    std::signal(SIGSEGV, [](int) { _exit(9); });
    ReportCrashes();
    raise(SIGSEGV);
  };
  EXPECT_EXIT(crash(), testing::ExitedWithCode(9), "^SIGSEGV ended the run outside of all component calls\n$");
}

TEST(CrashReport, IsSilentAboutAForkedProcess) {
  const auto crashOfAChild = [] {
    const pid_t child = fork();
    if (child == 0) raise(SIGSEGV);
    int state = 0;
    waitpid(child, &state, 0);
    _exit(WIFSIGNALED(state) && WTERMSIG(state) == SIGSEGV ? 7 : 1);
  };
  EXPECT_EXIT(CrashInACall(crashOfAChild), testing::ExitedWithCode(7), "^$");
}

}  // namespace
}  // namespace qmx::test
