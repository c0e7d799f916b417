#include "platform/odbc/watchdog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <exception>

#include "tests/platform/odbc/loopback.h"
#include "tests/support/environment.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr seconds kLimit{60};
constexpr const char* kAction = "a statement was executed";

// The test looks itself; the thread's own first look comes after the test.
SilenceLimits LookedAtByHand() {
  SilenceLimits limits;
  limits.betweenLooks = hours(1);
  return limits;
}

class WatchedConnection : public testing::Test {
 protected:
  void LookAfter(seconds pause) { watchdog_.Look(now_ += pause); }

  LoopbackServer server_;
  std::vector<Error> givenUp_;
  Watchdog watchdog_{LookedAtByHand(), [this](const Error& error) { givenUp_.push_back(error); }};
  Watch watch_{watchdog_};
  Watchdog::Clock::time_point now_{};
};

TEST_F(WatchedConnection, HasNoTraceOfACallThatEndsInTime) {
  std::optional<LoopbackConnection> connection;
  {
    const WatchedCall call(watch_, kAction, kLimit);
    connection.emplace(server_);
    LookAfter(seconds(0));
    LookAfter(seconds(59));
  }
  LookAfter(seconds(100));
  EXPECT_FALSE(watch_.HasEnded());
  EXPECT_TRUE(connection->Stands());
  EXPECT_THAT(givenUp_, IsEmpty());
}

TEST_F(WatchedConnection, IsEndedIfACallLastsLongerThanItsLimit) {
  const WatchedCall call(watch_, kAction, kLimit);
  const LoopbackConnection connection(server_);
  LookAfter(seconds(0));
  LookAfter(seconds(59));
  EXPECT_FALSE(watch_.HasEnded());
  LookAfter(seconds(1));
  EXPECT_TRUE(watch_.HasEnded());
  EXPECT_TRUE(connection.HasEndedForBoth());
  EXPECT_THAT(givenUp_, IsEmpty());
}

TEST_F(WatchedConnection, ReportsTheCallAndHowLongTheServerWasSilent) {
  {
    const WatchedCall call(watch_, "a transaction was ended", kLimit);
    LookAfter(seconds(0));
    LookAfter(seconds(61));
  }
  const WatchedCall later(watch_, kAction, seconds(5));
  const Error error = watch_.Silence();
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_EQ(error.Source(), "ODBC");
  EXPECT_EQ(error.Description(),
            "The server did not answer for 60 seconds while a transaction was ended, so the program ended the "
            "connection. Check the server and the network; a table that stays in progress is released with \"qmxadmin "
            "release TABLE\".");
  EXPECT_THAT(error.Details(), testing::ElementsAre(testing::Pair("SQLSTATE", "08S01")));
}

TEST_F(WatchedConnection, IsNotEndedByManyCallsWithinTheLimit) {
  for (int call = 0; call < 10; ++call) {
    const WatchedCall watched(watch_, kAction, kLimit);
    LookAfter(seconds(50));
  }
  EXPECT_FALSE(watch_.HasEnded());
}

TEST_F(WatchedConnection, IsNotEndedWhileNothingIsCalled) {
  { const WatchedCall call(watch_, kAction, kLimit); }
  LookAfter(seconds(0));
  LookAfter(seconds(100));
  LookAfter(seconds(100));
  EXPECT_FALSE(watch_.HasEnded());
}

TEST_F(WatchedConnection, IsNeverEndedWithoutALimit) {
  const WatchedCall call(watch_, kAction, seconds(0));
  const LoopbackConnection connection(server_);
  LookAfter(seconds(0));
  LookAfter(hours(9));
  EXPECT_FALSE(watch_.HasEnded());
  EXPECT_TRUE(connection.Stands());
  EXPECT_THAT(givenUp_, IsEmpty());
}

TEST_F(WatchedConnection, DoesNotCountTheTimeInWhichTheProcessWasStopped) {
  const WatchedCall call(watch_, kAction, hours(11));
  LookAfter(seconds(0));
  LookAfter(hours(1000));
  EXPECT_FALSE(watch_.HasEnded());
  LookAfter(hours(2));
  EXPECT_TRUE(watch_.HasEnded());
}

TEST_F(WatchedConnection, IsEndedWithoutEndingOthers) {
  Watch anothersWatch(watchdog_);
  std::optional<LoopbackConnection> another;
  {
    const WatchedCall call(anothersWatch, kAction, kLimit);
    another.emplace(server_);
  }
  const WatchedCall call(watch_, kAction, kLimit);
  LookAfter(seconds(0));
  LookAfter(seconds(60));
  EXPECT_TRUE(watch_.HasEnded());
  EXPECT_FALSE(anothersWatch.HasEnded());
  EXPECT_TRUE(another->Stands());
}

TEST_F(WatchedConnection, IsEndedEvenIfTheDriverTriesAnotherAddress) {
  const WatchedCall call(watch_, kAction, kLimit);
  LookAfter(seconds(0));
  LookAfter(seconds(60));
  const LoopbackConnection next(server_);
  LookAfter(seconds(1));
  EXPECT_TRUE(next.HasEndedForBoth());
}

TEST_F(WatchedConnection, IsGivenUpFiveSecondsAfterItsEndIfTheDriverDoesNotReturn) {
  watch_.Statement(std::make_shared<const std::string>("select 1"));
  const WatchedCall call(watch_, kAction, kLimit);
  LookAfter(seconds(0));
  LookAfter(seconds(60));
  LookAfter(seconds(4));
  EXPECT_THAT(givenUp_, IsEmpty());
  LookAfter(seconds(1));
  ASSERT_THAT(givenUp_, SizeIs(1));
  EXPECT_EQ(DescribeChain(givenUp_[0]),
            "error -2147467259, ODBC: The server did not answer for 65 seconds while a statement was executed, and the "
            "driver did not return when its connection was ended. Check the server and the network; a table that stays "
            "in progress is released with \"qmxadmin release TABLE\". [statement: select 1]");
}

TEST(AWatchdog, FreesAThreadThatWaitsForASilentServer) {
  const LoopbackServer server;
  SilenceLimits limits;
  limits.betweenLooks = milliseconds(10);
  Watchdog watchdog(limits, [](const Error&) { std::terminate(); });
  Watch watch(watchdog);
  std::optional<LoopbackConnection> connection;
  {
    const WatchedCall call(watch, "the program logged in", seconds(1));
    connection.emplace(server);
  }
  std::thread([&] {  // as a helper thread does
    const WatchedCall call(watch, kAction, milliseconds(100));
    char byte;
    EXPECT_EQ(recv(connection->Client(), &byte, 1, 0), 0);
  })
      .join();
  EXPECT_TRUE(watch.HasEnded());
}

TEST(AWatchdogDeathTest, EndsTheProcessOfADriverThatIgnoresTheEndOfItsConnection) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto waitForEver = [] {
    SilenceLimits limits;
    limits.betweenLooks = limits.afterShutdown = milliseconds(10);
    Watchdog watchdog(limits);
    Watch watch(watchdog);
    const WatchedCall call(watch, kAction, milliseconds(10));
    for (;;) pause();
  };
  EXPECT_EXIT(waitForEver(), testing::ExitedWithCode(2), "did not return when its connection was ended");
}

TEST(SilenceLimits, AreAStatementsTimeoutAnd30Seconds) {
  EXPECT_EQ(SilenceLimits().Statement(seconds(30)), seconds(60));
  EXPECT_EQ(SilenceLimits().Statement(seconds(150)), seconds(180));
  EXPECT_EQ(SilenceLimits().Statement(seconds(0)), seconds(0));
  EXPECT_EQ(SilenceLimits().logIn, seconds(60));
  EXPECT_EQ(SilenceLimits().transactionEnd, seconds(600));
}

TEST(SilenceLimits, AreTakenFromTheEnvironment) {
  const EnvironmentVariable seven("QMX_SILENCE_LIMIT", "7");
  const SilenceLimits limits = SilenceLimits::FromEnvironment();
  EXPECT_EQ(limits.Statement(seconds(30)), seconds(7));
  EXPECT_EQ(limits.logIn, seconds(7));
  EXPECT_EQ(limits.transactionEnd, seconds(7));
  EXPECT_EQ(limits.disconnect, seconds(7));
  const EnvironmentVariable none("QMX_SILENCE_LIMIT", "");
  EXPECT_EQ(SilenceLimits::FromEnvironment().transactionEnd, seconds(600));
}

TEST(SilenceLimits, AreAWholeNumberOfSeconds) {
  for (const char* const text : {"0", "-1", "1.5", "long", "5s", "99999999999"}) {
    const EnvironmentVariable wrong("QMX_SILENCE_LIMIT", text);
    const Error error = Raised([] { SilenceLimits::FromEnvironment(); });
    EXPECT_EQ(error.Number(), 5) << text;
    EXPECT_THAT(error.Description(),
                HasSubstr("QMX_SILENCE_LIMIT must be a whole number of seconds from 1 on, and is"));
  }
}

}  // namespace
}  // namespace qmx::test
