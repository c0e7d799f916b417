// The server falls silent: it keeps the connection open and never answers. The run ends by itself, as after a lost
// connection, and reports how long it waited and for what.
#include "tests/support/tcp_proxy.h"
#include "tests/whole/server_copy.h"

namespace qmx::test::silent_server {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kTable = "tssoc200";
constexpr const char* kAdvice =
    "so the program ended the connection. Check the server and the network; a table that stays in progress is released "
    "with \"qmxadmin release TABLE\".";

class SilentServer : public CopyIntoAServer {
 protected:
  SilentServer() : CopyIntoAServer({{"orders", 500}}) {
    company_.Change(DateTime::FromDate(2002, 1, 1), "update tssoc200 set crit = 'NEW'");
  }

  std::uint16_t ServerPort() { return static_cast<std::uint16_t>(std::stoi(OdbcKeyword(ConnectionText(), "PORT"))); }
  CopyProcesses ProgramBehind(const TcpProxy& line) {
    return {company_, WithOdbcKeyword(ConnectionText(), "PORT", std::to_string(line.Port())), ""};
  }
  static Process EndOf(CopyProcesses& program) {
    program.Environment("QMX_SILENCE_LIMIT", "5");
    const auto run = program.Start(kTable);
    WaitUntil("the program has ended", [&] { return run->HasEnded(); });
    return run->Wait();
  }

  // A copy over the line, on which the server falls silent during `action`. Returns how the process ended.
  Process ExpectSilenceReported(const TcpProxy& line, const std::string& action) {
    CopyProcesses program = ProgramBehind(line);
    const Process ended = EndOf(program);
    EXPECT_TRUE(line.Swallows());
    ExpectFailureOfTheReleaseToo(program, ended, kTable);
    const std::string text = "The server did not answer for 5 seconds while " + action + ", " + kAdvice;
    EXPECT_THAT(ended.err, AllOf(HasSubstr("because of error -2147467259, ODBC: " + text), HasSubstr("table: tssoc200"),
                                 HasSubstr("key: ")));
    EXPECT_THAT(program.Log(kTable),
                AllOf(HasSubstr("Copy of Service Orders from Orvan to Local DB failed\"\r\n"), HasSubstr(text)));
    EXPECT_EQ(InUse(), "1");
    EXPECT_EQ(Lutm(), kLutm);
    return ended;
  }
  std::string FirstOrder() { return company_.Value("select min(orno) from tssoc200"); }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SilentServer);
INSTANTIATE_TEST_SUITE_P(Over, SilentServer, testing::ValuesIn(ServersUnderTest()), ServerName);

TEST_P(SilentServer, AtTheLogInFailsTheStart) {
  ControlRecord(kTable, kFullCopy);
  TcpProxy line(ServerPort());
  line.Swallow(TcpProxy::Swallowed::Everything);
  CopyProcesses program = ProgramBehind(line);
  const Process ended = EndOf(program);
  EXPECT_EQ(ended.status, 2) << ended.err;
  const std::string text =
      std::string("The server did not answer for 5 seconds while the program logged in, ") + kAdvice;
  EXPECT_THAT(ended.err, HasSubstr(text));
  EXPECT_THAT(program.Log(kTable), HasSubstr(text));
  EXPECT_THAT(program.File("QMXDBSynclog.txt"), HasSubstr("Data Copy Failed:\r\nError is - "));
  EXPECT_EQ(InUse(), "0");
}

TEST_P(SilentServer, InASelectEndsTheCopyAndLeavesTheTableInProgress) {
  ControlRecord(kTable, kOnlyChanged);
  const TcpProxy line(ServerPort(), FirstOrder());
  const Process ended = ExpectSilenceReported(line, "a statement was executed");
  EXPECT_THAT(ended.err, HasSubstr("statement: select * from tssoc200 where orno='" + FirstOrder() + "'"));
  EXPECT_EQ(Value("select count(*) from tssoc200"), "0");
}

TEST_P(SilentServer, InABatchOfInsertsEndsTheCopyAndLeavesTheTableInProgress) {
  ControlRecord(kTable, kFullCopy);
  ExpectSilenceReported(TcpProxy(ServerPort(), FirstOrder()), "a statement was executed");
  EXPECT_EQ(Value("select count(*) from tssoc200"), "0");
}

// The server did commit; the program cannot know.
TEST_P(SilentServer, InACommitEndsTheCopyAndLeavesTheTableInProgress) {
  ControlRecord(kTable, kOnlyChanged);
  ExpectSilenceReported(TcpProxy(ServerPort(), "COMMIT", TcpProxy::Swallowed::Answers), "a transaction was ended");
  EXPECT_NE(Value("select count(*) from tssoc200"), "0");
}

// The server did commit, so all rows are new, with their last update time. The program only says how to find that out.
TEST_P(SilentServer, InTheCommitOfAWholeCopyIsReportedAsAnUnknownOutcome) {
  ControlRecord(kTable, kFullCopy);
  const TcpProxy line(ServerPort(), "COMMIT", TcpProxy::Swallowed::Answers);
  CopyProcesses program = ProgramBehind(line);
  program.Environment("QMX_COPY", "whole");
  const Process ended = EndOf(program);
  EXPECT_TRUE(line.Swallows());
  ExpectFailureOfTheReleaseToo(program, ended, kTable);
  EXPECT_EQ(InUse(), "1");
  EXPECT_EQ(Value("select count(*) from tssoc200"), "500");
  EXPECT_NE(Lutm(), kLutm);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("It is not known whether the transaction was committed"),
                               HasSubstr("last update time of the new rows: " + Lutm()),
                               HasSubstr("The server did not answer for 5 seconds while a transaction was ended, ")));
}

TEST_P(SilentServer, InABatchOfAWholeCopyKeepsTheOldRows) {
  ControlRecord(kTable, kFullCopy);
  Sql("insert into tssoc200 (orno) values ('A')");
  const TcpProxy line(ServerPort(), FirstOrder());
  CopyProcesses program = ProgramBehind(line);
  program.Environment("QMX_COPY", "whole");
  const Process ended = EndOf(program);
  EXPECT_TRUE(line.Swallows());
  ExpectFailureOfTheReleaseToo(program, ended, kTable);
  EXPECT_EQ(Column("select orno from tssoc200"), std::vector<std::string>{"A"});
  EXPECT_EQ(Lutm(), kLutm);
}

TEST(AStuckDriver, IsNotWaitedForFiveSecondsAfterTheEndOfItsConnection) {
  const Company company;
  CopyProcesses program(company, "Driver=" STUCK_DRIVER, "");
  program.Environment("QMX_SILENCE_LIMIT", "1");
  const auto run = program.Start(kTable);
  WaitUntil("the program has ended", [&] { return run->HasEnded(); });
  const Process ended = run->Wait();
  EXPECT_EQ(ended.status, 2);
  const std::string text =
      "The server did not answer for 6 seconds while the program logged in, and the driver did not return when its "
      "connection was ended. Check the server and the network; a table that stays in progress is released with "
      "\"qmxadmin release TABLE\".";
  EXPECT_EQ(ended.err,
            "error -2147467259, ODBC: " + text +
                " [what to do: \"qmxadmin release tssoc200\" where the table is still in progress, then copy "
                "again]\n");
  EXPECT_THAT(
      program.File("QMXDBSynclog.txt"),
      AllOf(StartsWith("Date-Time :"), EndsWith("\r\nData Copy Failed:\r\nError is - -2147467259: " + text + "\r\n")));
}

}  // namespace
}  // namespace qmx::test::silent_server
