// Requests to end that come from the console, and how a child process gets them.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <thread>

#include "platform/windows/end_events.h"
#include "tests/tools/qmxadmin/system/waiting_child.h"
#include "tools/qmxadmin/system/end_requests.h"

namespace qmx::test {
namespace {

const EndRequest kKey{CTRL_C_EVENT, "Ctrl+C"};
const EndRequest kClosing{CTRL_CLOSE_EVENT, "The console is closed"};

std::atomic<PHANDLER_ROUTINE> handler = nullptr;

BOOL WINAPI KeepHandler(PHANDLER_ROUTINE routine, BOOL isAdded) {
  handler = isAdded ? routine : nullptr;
  return TRUE;
}

// Windows, as far as the console is concerned.
class EndRequestsOfTheConsole : public testing::Test {
 protected:
  EndRequestsOfTheConsole() { endEventCalls.setConsoleHandler = KeepHandler; }
  ~EndRequestsOfTheConsole() override { endEventCalls = before_; }

 private:
  EndEventCalls before_ = endEventCalls;
};

TEST_F(EndRequestsOfTheConsole, AreKeptUntilTheyAreTaken) {
  EndRequests requests;
  ASSERT_NE(handler.load(), nullptr);
  EXPECT_TRUE(requests.Take().empty());
  EXPECT_TRUE(handler.load()(CTRL_C_EVENT));
  EXPECT_TRUE(handler.load()(CTRL_BREAK_EVENT));
  EXPECT_TRUE(handler.load()(EndEvents::kClose));
  EXPECT_FALSE(handler.load()(77));
  requests.Wait({}, std::chrono::hours(1));
  const std::vector<EndRequest> taken = requests.Take();
  ASSERT_EQ(taken.size(), 3U);
  EXPECT_EQ(taken[0].name, "Ctrl+C");
  EXPECT_EQ(taken[1].name, "Ctrl+Break");
  EXPECT_EQ(taken[2].name, "WM_CLOSE");
  EXPECT_TRUE(requests.Take().empty());
}

TEST_F(EndRequestsOfTheConsole, KeepWindowsWaitingIfItEndsTheProcessAfterThem) {
  const std::pair<DWORD, const char*> events[] = {{CTRL_CLOSE_EVENT, "The console is closed"},
                                                  {CTRL_LOGOFF_EVENT, "The user logs off"},
                                                  {CTRL_SHUTDOWN_EVENT, "Windows shuts down"}};
  for (const auto& [event, name] : events) {
    EndRequests requests;
    static std::atomic<bool> hasReturned = false;
    std::thread([call = handler.load(), number = event] {
      call(number);
      hasReturned = true;
    }).detach();
    requests.Wait({}, std::chrono::hours(1));
    const std::vector<EndRequest> taken = requests.Take();
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(taken[0].name, name);
    EXPECT_FALSE(hasReturned);
  }
}

TEST_F(EndRequestsOfTheConsole, AreNoneAfterwards) {
  { const EndRequests requests; }
  EXPECT_EQ(handler.load(), nullptr);
}

TEST(EndRequestsOfAChild, ReachItWithoutAConsole) {
  for (const EndRequest& request : {kKey, kClosing}) {
    WaitingChild child;
    child.Process().PassOn(request);
    child.WaitForEnd();
    EXPECT_EQ(child.Process().ExitStatus(), 1);
  }
}

TEST(EndRequestsOfAChild, ReachNoOtherChild) {
  WaitingChild asked, other;
  asked.Process().PassOn(kKey);
  asked.WaitForEnd();
  EXPECT_FALSE(other.Process().HasEnded());
  other.End();
  EXPECT_EQ(other.Process().ExitStatus(), 0);
}

TEST(EndRequestsOfAChild, EndItAtOnceIfASecondKeyFollows) {
  WaitingChild child("stay until ");
  child.Process().PassOn(kKey);
  EXPECT_FALSE(child.Process().HasEnded());
  child.Process().PassOn(kKey);
  child.WaitForEnd();
  EXPECT_EQ(child.Process().ExitStatus(), std::nullopt);
  EXPECT_EQ(child.Process().Killer(), "an interruption");
}

TEST(EndRequestsOfAChild, LeaveItItsTimeIfTheConsoleIsClosedAfterAKey) {
  WaitingChild child("stay until ");
  child.Process().PassOn(kKey);
  child.Process().PassOn(kClosing);
  child.End();
  EXPECT_EQ(child.Process().ExitStatus(), 0);
}

TEST(AChildOfWindows, HasAKillerThatSaysIfNothingInItCouldReportTheEnd) {
  const std::pair<const char*, const char*> killers[] = {
      {"0xC0000005", "exception 0xC0000005"},
      {"0xC0000409", "exception 0xC0000409 (a component ended the process at once)"},
      {"0xC0000374", "exception 0xC0000374 (a component ended the process at once)"}};
  for (const auto& [status, killer] : killers) {
    ChildProcess child(TEST_CHILD, std::string("end with ") + status, {});
    while (!child.HasEnded()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(child.Killer(), killer);
  }
}

}  // namespace
}  // namespace qmx::test
