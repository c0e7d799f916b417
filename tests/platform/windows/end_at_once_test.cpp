#include "platform/system/end_at_once.h"

#include <gmock/gmock.h>
#include <windows.h>
#include <winternl.h>

#include <thread>

#include "platform/error.h"
#include "platform/odbc/watchdog.h"
#include "platform/progress/progress.h"
#include "platform/system/exit_guard.h"
#include "platform/system/failure_report.h"
#include "startup/silent_run.h"
#include "tests/support/second_process.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

constexpr int kHangs = 99;

extern "C" NTSTATUS NTAPI LdrLockLoaderLock(ULONG flags, ULONG* result, ULONG_PTR* cookie);

// A driver that hangs while its library is being loaded. The process ends by itself only if nothing else ends it.
void HoldTheLoadersLock() {
  const HANDLE held = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread([held] {
    ULONG result = 0;
    ULONG_PTR cookie = 0;
    LdrLockLoaderLock(0, &result, &cookie);
    SetEvent(held);
    Sleep(20'000);
    TerminateProcess(GetCurrentProcess(), kHangs);
  }).detach();
  WaitForSingleObject(held, INFINITE);
}

const SecondProcess::Work kGuarded("end in a guarded process", [](const SecondProcess::Words&) {
  GuardExit();
  EndAtOnce(5);
});

const SecondProcess::Work kLocked("end while the loader is locked", [](const SecondProcess::Words&) {
  HoldTheLoadersLock();
  EndAtOnce(6);
});

const SecondProcess::Work kSilentDriver("a driver that does not return", [](const SecondProcess::Words&) {
  SilenceLimits limits = SilenceLimits::All(std::chrono::seconds(1));
  limits.betweenLooks = std::chrono::hours(1);
  Watchdog watchdog(limits);
  Watch watch(watchdog);
  const WatchedCall call(watch, "a statement was executed", std::chrono::seconds(1));
  HoldTheLoadersLock();
  watchdog.Look({});
  watchdog.Look(Watchdog::Clock::time_point(std::chrono::hours(1)));
});

const SecondProcess::Work kSilentRun("a run whose driver does not return", [](const SecondProcess::Words&) {
  GuardExit();
  StandardErrorReport failures;
  HoldTheLoadersLock();
  EndSilentRun("", Progress::kNobody, Error(5, "Test", "It is silent."), failures, nullptr);
});

TEST(AProcessThatEndsAtOnce, HasTheStatusWithoutAWordOfTheGuard) {
  const Process end = SecondProcess("end in a guarded process", {}).Wait();
  EXPECT_EQ(end.status, 5);
  EXPECT_EQ(end.err, "");
}

TEST(AProcessThatEndsAtOnce, DoesNotWaitForTheLoadersLock) {
  EXPECT_EQ(SecondProcess("end while the loader is locked", {}).Wait().status, 6);
}

TEST(ADriverThatDoesNotReturn, EndsTheProcessThoughItHoldsTheLoadersLock) {
  const Process driver = SecondProcess("a driver that does not return", {}).Wait();
  EXPECT_EQ(driver.status, 2);
  EXPECT_THAT(driver.err, HasSubstr("the driver did not return when its connection was ended"));
  const Process run = SecondProcess("a run whose driver does not return", {}).Wait();
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("It is silent."));
}

}  // namespace
}  // namespace qmx::test
