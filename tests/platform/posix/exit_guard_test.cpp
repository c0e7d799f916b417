// An exit that main did not cause always has status 2.
#include "platform/system/exit_guard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "platform/running_call.h"

namespace qmx::test {
namespace {

using testing::ExitedWithCode;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kLine = "exit was called by something other than the program during List of A.Manager";

[[noreturn]] void ExitInACall(void (*exit)(int), int status) {
  GuardExit();
  const RunningCall running("A.Manager", "List");
  exit(status);
  std::abort();
}

TEST(ExitGuard, TurnsAnyStatusIntoTwo) {
  EXPECT_EXIT(ExitInACall(std::exit, 0), ExitedWithCode(2), kLine);
  EXPECT_EXIT(ExitInACall(std::exit, 3), ExitedWithCode(2), kLine);
  EXPECT_EXIT(ExitInACall(std::quick_exit, 0), ExitedWithCode(2), kLine);
}

TEST(ExitGuard, WorksOnEveryThread) {
  const auto exitOnAThread = [](int status) { std::thread([status] { std::exit(status); }).join(); };
  EXPECT_EXIT(ExitInACall(exitOnAThread, 0), ExitedWithCode(2), kLine);
}

TEST(ExitGuard, LetsTheHandlersRunThatWereRegisteredLater) {
  const auto exit = [](int status) {
    std::atexit([] { std::fputs("a component's own handler\n", stderr); });
    std::exit(status);
  };
  EXPECT_EXIT(ExitInACall(exit, 0), ExitedWithCode(2), std::string("^a component's own handler\n") + kLine);
}

TEST(ExitGuard, DoesNotAffectTheEndOfMain) {
  const auto endOfMain = [](int status) { std::exit(EndOfMain(status)); };
  EXPECT_EXIT(ExitInACall(endOfMain, 3), ExitedWithCode(3), Not(HasSubstr(kLine)));
  EXPECT_EXIT(ExitInACall(endOfMain, 0), ExitedWithCode(0), Not(HasSubstr(kLine)));
}

TEST(ExitGuard, LeavesAForkedProcessAlone) {
  const auto exitOfAChild = [](int) {
    const pid_t child = fork();
    if (child == 0) std::exit(7);
    int state = 0;
    waitpid(child, &state, 0);
    _exit(WIFEXITED(state) ? WEXITSTATUS(state) : 1);
  };
  EXPECT_EXIT(ExitInACall(exitOfAChild, 0), ExitedWithCode(7), Not(HasSubstr(kLine)));
}

}  // namespace
}  // namespace qmx::test
