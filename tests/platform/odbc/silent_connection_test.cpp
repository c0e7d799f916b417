// A server behind a line that swallows everything, at each kind of call. The test looks for the watchdog, with a clock
// of its own: nothing waits for a limit to pass.
#include <atomic>
#include <optional>
#include <thread>

#include "platform/odbc/catalog.h"
#include "platform/odbc/connection.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/statement.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/tcp_proxy.h"

namespace qmx::test {
namespace {

using testing::StartsWith;

// Looks as if half a minute passed between two looks.
class QuickLooks {
 public:
  explicit QuickLooks(Watchdog& watchdog)
      : thread_([this, &watchdog] {
          for (Watchdog::Clock::time_point now{}; !hasEnded_; now += std::chrono::seconds(30)) {
            watchdog.Look(now);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
          }
        }) {}
  ~QuickLooks() {
    hasEnded_ = true;
    thread_.join();
  }
  QuickLooks(const QuickLooks&) = delete;
  QuickLooks& operator=(const QuickLooks&) = delete;

 private:
  std::atomic<bool> hasEnded_ = false;
  std::thread thread_;
};

class ASilentServer : public RecordSetTest {
 protected:
  ASilentServer() { CreatePeople(); }

  static SilenceLimits LookedAtByTheTest() {
    SilenceLimits limits;
    limits.betweenLooks = std::chrono::hours(1);
    return limits;
  }

  std::string TextBehindTheLine() {
    return WithOdbcKeyword(base->ConnectionText(), "PORT", std::to_string(line_.Port()));
  }
  void Swallow() { line_.Swallow(TcpProxy::Swallowed::Everything); }

  // Of an action on a connection that stood before the server fell silent.
  template <typename Action>
  Error RaisedBy(Action&& action) {
    OdbcConnection odbc(TextBehindTheLine(), watchdog_);
    Swallow();
    const QuickLooks looks(watchdog_);
    return Raised([&] { action(odbc); });
  }

  static void ExpectSilence(const Error& error, const std::string& limit, const std::string& action) {
    EXPECT_EQ(error.Number(), -2147467259);
    EXPECT_THAT(error.Description(), StartsWith("The server did not answer for " + limit + " seconds while " + action +
                                                ", so the program "
                                                "ended the connection."));
    EXPECT_NE(error.Cause(), nullptr);
  }

  TcpProxy line_{static_cast<std::uint16_t>(std::stoi(OdbcKeyword(base->ConnectionText(), "PORT")))};
  Watchdog watchdog_{LookedAtByTheTest(), [](const Error&) {}};
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ASilentServer);
INSTANTIATE_TEST_SUITE_P(Over, ASilentServer, testing::ValuesIn(ServersUnderTest()), DriverName);

TEST_P(ASilentServer, IsReportedAtTheLogIn) {
  Swallow();
  const QuickLooks looks(watchdog_);
  ExpectSilence(Raised([&] { OdbcConnection(TextBehindTheLine(), watchdog_); }), "60", "the program logged in");
}

TEST_P(ASilentServer, IsReportedAtAQuery) {
  const Error error = RaisedBy([](OdbcConnection& odbc) { odbc.AskText("select 1"); });
  EXPECT_THAT(error.Description(), StartsWith("The server did not answer for 60 seconds while a statement was "));
  EXPECT_NE(error.Cause(), nullptr);
}

TEST_P(ASilentServer, HasAStatementsOwnTimeoutAnd30Seconds) {
  OdbcConnection odbc(TextBehindTheLine(), watchdog_);
  odbc.Timeout(std::chrono::seconds(150));
  Swallow();
  const QuickLooks looks(watchdog_);
  const Error error = Raised([&] { odbc.AskText("select 1"); });
  EXPECT_THAT(error.Description(), StartsWith("The server did not answer for 180 seconds while a statement was "));
}

TEST_P(ASilentServer, IsReportedAtACommit) {
  OdbcConnection odbc(TextBehindTheLine(), watchdog_);
  odbc.Begin();
  odbc.Run("insert into people (code) values ('A')");
  Swallow();
  const QuickLooks looks(watchdog_);
  ExpectSilence(Raised([&] { odbc.Commit(); }), "600", "a transaction was ended");
}

TEST_P(ASilentServer, IsReportedAtTheDescriptionOfATable) {
  const Error error = RaisedBy([](OdbcConnection& odbc) { DescribeTable(odbc, "people"); });
  EXPECT_THAT(error.Description(), StartsWith("The server did not answer for 60 seconds while "));
}

TEST_P(ASilentServer, IsReportedAtEveryLaterCallToo) {
  OdbcConnection odbc(TextBehindTheLine(), watchdog_);
  Swallow();
  const QuickLooks looks(watchdog_);
  const std::string first = Raised([&] { odbc.AskText("select 1"); }).Description();
  EXPECT_EQ(Raised([&] { odbc.AskText("select 2"); }).Description(), first);
  EXPECT_EQ(
      Raised([&] { odbc.Begin(); }).Description(),
      "It is not known whether the last rows were saved, so nothing more is written over this connection: " + first);
}

TEST_P(ASilentServer, DoesNotKeepAConnectionFromBeingClosed) {
  std::optional<OdbcConnection> odbc(std::in_place, TextBehindTheLine(), watchdog_);
  odbc->Begin();
  odbc->Run("insert into people (code) values ('A')");
  Swallow();
  const QuickLooks looks(watchdog_);
  odbc.reset();
}

TEST_P(ASilentServer, LeavesOtherConnectionsAlone) {
  OdbcConnection other(base->ConnectionText(), watchdog_);
  RaisedBy([](OdbcConnection& odbc) { odbc.AskText("select 1"); });
  EXPECT_EQ(other.AskText("select 1"), "1");
}

}  // namespace
}  // namespace qmx::test
