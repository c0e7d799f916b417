#include "platform/system/interrupt_signals.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <chrono>
#include <thread>

#include "platform/error.h"
#include "platform/interruption.h"
#include "platform/system/end_line.h"
#include "platform/windows/end_event_name.h"
#include "platform/windows/end_events.h"
#include "platform/windows/handle.h"
#include "tests/support/raised.h"
#include "tests/support/second_process.h"

namespace qmx::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr UINT kEndedByKey = 0xC000013A;

PHANDLER_ROUTINE handler = nullptr;
BOOL handlerIsTaken = TRUE;

BOOL WINAPI KeepHandler(PHANDLER_ROUTINE routine, BOOL isAdded) {
  handler = isAdded ? routine : nullptr;
  return handlerIsTaken;
}

void UseFakeConsole() { endEventCalls.setConsoleHandler = KeepHandler; }

DWORD EventOf(const std::string& name) {
  for (const DWORD event : {CTRL_C_EVENT, CTRL_BREAK_EVENT, CTRL_CLOSE_EVENT, CTRL_LOGOFF_EVENT, CTRL_SHUTDOWN_EVENT}) {
    if (name == EndEvents::NameOf(event)) return event;
  }
  throw Error(errors::kInvalidCall, "Test", name);
}

// Windows' thread calls the handler and ends the process when it returns, as after an event that is no key.
void CallHandler(DWORD event) {
  std::thread([event] {
    handler(event);
    TerminateProcess(GetCurrentProcess(), 77);
  }).detach();
}

void AwaitRequest() {
  while (!Interruption::IsRequested()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

// A run that ends at the request, after some time.
const SecondProcess::Work kEnds("ends at the request", [](const SecondProcess::Words& words) {
  UseFakeConsole();
  endEventCalls.timeToEnd = []() noexcept -> DWORD { return 60'000; };
  {
    const InterruptSignals signals("the copy ends.");
    CallHandler(EventOf(words[0]));
    AwaitRequest();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));  // the handler would have returned
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  std::fprintf(stderr, "%s\n", Raised([] { Interruption::RaiseIfRequested(); }).Description().c_str());
});

// A run that does not end within the time.
const SecondProcess::Work kStays("stays", [](const SecondProcess::Words& words) {
  UseFakeConsole();
  endEventCalls.timeToEnd = []() noexcept -> DWORD { return 100; };
  EndLine::SetTable("tsmdm030");
  EndLine::SetListener([](std::string_view, int status) noexcept {
    std::fprintf(stderr, "status %d\n", status);
    std::fflush(stderr);
  });
  const InterruptSignals signals("the copy ends.");
  CallHandler(EventOf(words[0]));
  Sleep(INFINITE);
});

const SecondProcess::Work kTwoKeys("two keys", [](const SecondProcess::Words&) {
  UseFakeConsole();
  const InterruptSignals signals("the copy ends.");
  handler(CTRL_C_EVENT);
  handler(CTRL_C_EVENT);  // at once, so it is the same one
  std::fprintf(stderr, "one\n");
  std::fflush(stderr);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  handler(CTRL_BREAK_EVENT);
});

class ConsoleEvents : public testing::Test {
 protected:
  ConsoleEvents() { UseFakeConsole(); }
  ~ConsoleEvents() override {
    endEventCalls = before_;
    handlerIsTaken = TRUE;
    Raised([] {
      Interruption::RaiseIfRequested();
      throw Error(5, "", "");
    });
  }

 private:
  EndEventCalls before_ = endEventCalls;
};

TEST_F(ConsoleEvents, OfKeysAreRequestsToEndTheRunAndLeaveItItsTime) {
  for (const char* name : {"CTRL_C", "CTRL_BREAK"}) {
    testing::internal::CaptureStderr();
    const InterruptSignals signals("the copy ends.");
    EXPECT_TRUE(handler(EventOf(name)));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), name + std::string(": the copy ends.\n"));
    EXPECT_EQ(Raised([] { Interruption::RaiseIfRequested(); }).Description(),
              name + std::string(" asked the program to end."));
  }
}

TEST_F(ConsoleEvents, OfTwoKeysEndTheProcessAtOnce) {
  const Process end = SecondProcess("two keys", {}).Wait();
  EXPECT_EQ(static_cast<UINT>(end.status), kEndedByKey);
  EXPECT_THAT(end.err, EndsWith("CTRL_C: the copy ends.\none\r\n"));
}

TEST_F(ConsoleEvents, ThatEndTheProcessWaitUntilItsMainHasEnded) {
  for (const std::string name : {"CTRL_CLOSE", "CTRL_LOGOFF", "CTRL_SHUTDOWN"}) {
    const Process end = SecondProcess("ends at the request", {name}).Wait();
    EXPECT_EQ(end.status, 0) << name;
    EXPECT_EQ(end.err, name + ": the copy ends.\n" + name + " asked the program to end.\r\n");
  }
}

TEST_F(ConsoleEvents, ThatEndTheProcessAreReportedShortlyBeforeTheirTimeIsOver) {
  const std::string end =
      " ended the run outside of all component calls: the table may stay in progress: qmxadmin "
      "status, qmxadmin release tsmdm030\nstatus 2\r\n";
  const std::pair<std::string, std::string> events[] = {{"CTRL_CLOSE", "The closed console"},
                                                        {"CTRL_LOGOFF", "The end of the session"},
                                                        {"CTRL_SHUTDOWN", "The end of the session"}};
  for (const auto& [name, reason] : events) {
    const Process stayed = SecondProcess("stays", {name}).Wait();
    EXPECT_EQ(stayed.status, 2) << name;
    EXPECT_EQ(stayed.err, name + ": the copy ends.\n" + reason + end);
  }
}

TEST_F(ConsoleEvents, OfOtherKindsAreLeftToWindows) {
  const InterruptSignals signals("the copy ends.");
  EXPECT_FALSE(handler(77));
  EXPECT_FALSE(Interruption::IsRequested());
}

TEST_F(ConsoleEvents, HaveNoHandlerAfterwards) {
  { const InterruptSignals signals("the copy ends."); }
  EXPECT_EQ(handler, nullptr);
}

TEST_F(ConsoleEvents, ThatWindowsWillNotAnnounceAreReported) {
  handlerIsTaken = FALSE;
  testing::internal::CaptureStderr();
  const InterruptSignals signals("the copy ends.");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Windows refuses to announce Ctrl+C: it would end the run at once.\n");
}

TEST_F(ConsoleEvents, HaveATimeOfWindows) {
  EXPECT_GT(EndEvents::TimeToEnd(), 0U);
  EXPECT_LE(EndEvents::TimeToEnd(), 5000U);
}

// The window is that of this process.
HWND SessionWindow() {
  for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, kSessionWindow, nullptr));) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) return window;
  }
  return nullptr;
}

HWND AwaitSessionWindow() {
  HWND window = nullptr;
  for (int look = 0; look < 1000 && !(window = SessionWindow()); ++look) Sleep(10);
  if (!window) std::_Exit(4);
  return window;
}

const SecondProcess::Work kWindow("session ends", [](const SecondProcess::Words& words) {
  UseFakeConsole();
  endEventCalls.timeToEnd = []() noexcept -> DWORD { return 60'000; };
  const InterruptSignals signals("the copy ends.");
  const HWND window = AwaitSessionWindow();
  EXPECT_TRUE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0));
  SendMessageW(window, WM_ENDSESSION, FALSE, 0);  // another program refused
  if (Interruption::IsRequested()) std::_Exit(3);
  SendNotifyMessageW(window, WM_ENDSESSION, TRUE, words[0] == "CTRL_LOGOFF" ? ENDSESSION_LOGOFF : 0);
  AwaitRequest();
  std::fprintf(stderr, "%s\n", Raised([] { Interruption::RaiseIfRequested(); }).Description().c_str());
});

TEST_F(ConsoleEvents, OfTheEndOfASessionComeToAWindow) {
  for (const std::string name : {"CTRL_LOGOFF", "CTRL_SHUTDOWN"}) {
    const Process end = SecondProcess("session ends", {name}).Wait();
    if (end.status == 4) GTEST_SKIP() << "There is no desktop for a window.";
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_THAT(end.err, HasSubstr(name + " asked the program to end.\r\n"));  // two threads write
  }
}

const SecondProcess::Work kClosed("window is closed", [](const SecondProcess::Words&) {
  UseFakeConsole();
  const InterruptSignals signals("the copy ends.");
  const HWND window = AwaitSessionWindow();
  for (int i = 0; i < 2; ++i) EXPECT_EQ(SendMessageW(window, WM_CLOSE, 0, 0), 0);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));  // as for a second key
  SendMessageW(window, WM_CLOSE, 0, 0);
  std::fprintf(stderr, "%s\n", Raised([] { Interruption::RaiseIfRequested(); }).Description().c_str());
  std::fprintf(stderr, IsWindow(window) ? "The window stays.\n" : "The window is gone.\n");
});

TEST_F(ConsoleEvents, OfTheTaskSchedulerCloseTheWindowAndAreOneRequest) {
  const Process end = SecondProcess("window is closed", {}).Wait();
  if (end.status == 4) GTEST_SKIP() << "There is no desktop for a window.";
  EXPECT_EQ(end.status, 0);
  EXPECT_EQ(end.err, "WM_CLOSE: the copy ends.\nWM_CLOSE asked the program to end.\r\nThe window stays.\r\n");
}

TEST(RequestsOfTheProgramThatStartedThisOne, AreAnEventThatTheEnvironmentNames) {
  const Handle event(CreateEventW(nullptr, TRUE, FALSE, L"Local\\qmx-test-end-event"));
  ASSERT_TRUE(SetEnvironmentVariableW(kEndEventVariable, L"Local\\qmx-test-end-event"));
  const InterruptSignals signals("the copy ends.");
  SetEnvironmentVariableW(kEndEventVariable, nullptr);
  EXPECT_FALSE(Interruption::IsRequested());
  testing::internal::CaptureStderr();
  SetEvent(event.Get());
  AwaitRequest();
  EXPECT_EQ(Raised([] { Interruption::RaiseIfRequested(); }).Description(), "qmxadmin asked the program to end.");
  testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace qmx::test
