// Signals as requests to end: the first one asks, a further one ends the process.
#include "platform/system/interrupt_signals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include "platform/interruption.h"
#include "tests/support/process.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::KilledBySignal;

class AnInterruptSignal : public testing::TestWithParam<int> {
 protected:
  AnInterruptSignal() { RestoreEndingSignals(); }

  static void Raise() { raise(GetParam()); }
  static void RaiseLater() {
    std::this_thread::sleep_for(std::chrono::milliseconds(60));  // later than signals that count as one
    raise(GetParam());
  }
  static std::string Name() { return GetParam() == SIGINT ? "SIGINT" : GetParam() == SIGTERM ? "SIGTERM" : "SIGHUP"; }
};

TEST_P(AnInterruptSignal, IsARequestThatBecomesOneError) {
  testing::internal::CaptureStderr();
  {
    const InterruptSignals signals("the work ends soon.");
    EXPECT_FALSE(Interruption::IsRequested());
    Raise();
    EXPECT_TRUE(Interruption::IsRequested());
    const Error error = Raised([] { Interruption::RaiseIfRequested(); });
    EXPECT_EQ(error.Number(), 18);
    EXPECT_EQ(error.Source(), "Interrupted");
    EXPECT_EQ(error.Description(), Name() + " asked the program to end.");
    EXPECT_FALSE(Interruption::IsRequested());
    EXPECT_NO_THROW(Interruption::RaiseIfRequested());
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), Name() + ": the work ends soon.\n");
}

TEST_P(AnInterruptSignal, EndsTheProcessWhenItComesAgain) {
  const auto twice = [] {
    const InterruptSignals signals("the work ends soon.");
    Raise();
    RaiseLater();
    _exit(0);
  };
  EXPECT_EXIT(twice(), KilledBySignal(GetParam()), "^" + Name() + ": the work ends soon.\n$");
}

TEST_P(AnInterruptSignal, EndsTheProcessWhenItComesAfterAnother) {
  const auto afterAnother = [] {
    const InterruptSignals signals("the work ends soon.");
    raise(GetParam() == SIGINT ? SIGTERM : SIGINT);
    RaiseLater();
    _exit(0);
  };
  EXPECT_EXIT(afterAnother(), KilledBySignal(GetParam()), "the work ends soon.\n$");
}

// A busy machine may let too much time pass between the two. Then they are sent again by another process.
TEST_P(AnInterruptSignal, CountsOnceIfItIsSentTwiceAtATime) {
  constexpr int kMostTries = 20;
  int state = 0;
  std::string written;
  for (int tries = 0; tries == 0 || (WIFSIGNALED(state) && tries < kMostTries); ++tries) {
    testing::internal::CaptureStderr();
    const pid_t child = fork();
    if (child == 0) {
      const InterruptSignals signals("the work ends soon.");
      Raise();
      Raise();
      _exit(Interruption::IsRequested() ? 7 : 0);
    }
    waitpid(child, &state, 0);
    written = testing::internal::GetCapturedStderr();
  }
  EXPECT_TRUE(WIFEXITED(state) && WEXITSTATUS(state) == 7) << state;
  EXPECT_EQ(written, Name() + ": the work ends soon.\n");
}

TEST_P(AnInterruptSignal, StaysIgnoredIfItWas) {
  const auto ignored = [] {
    std::signal(GetParam(), SIG_IGN);
    const InterruptSignals signals("the work ends soon.");
    Raise();
    RaiseLater();
    _exit(Interruption::IsRequested() ? 0 : 7);
  };
  EXPECT_EXIT(ignored(), testing::ExitedWithCode(7), "^$");
}

TEST_P(AnInterruptSignal, HasItsFormerEffectAfterwards) {
  const auto afterwards = [] {
    { const InterruptSignals signals("the work ends soon."); }
    Raise();
    _exit(0);
  };
  EXPECT_EXIT(afterwards(), KilledBySignal(GetParam()), "^$");
}

TEST_P(AnInterruptSignal, EndsAForkedProcessAtOnce) {
  const auto inAChild = [] {
    const InterruptSignals signals("the work ends soon.");
    const pid_t child = fork();
    if (child == 0) {
      Raise();
      _exit(0);
    }
    int state = 0;
    waitpid(child, &state, 0);
    _exit(WIFSIGNALED(state) && WTERMSIG(state) == GetParam() ? 7 : 0);
  };
  EXPECT_EXIT(inAChild(), testing::ExitedWithCode(7), "^$");
}

INSTANTIATE_TEST_SUITE_P(Each, AnInterruptSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

}  // namespace
}  // namespace qmx::test
