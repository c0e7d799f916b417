// The connection is lost during a copy: the server ends it, the line is cut, the server is killed, or the program is.
// Saved rows are kept, nothing else is written, and the table stays in progress.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>

#include "tests/support/server_sessions.h"
#include "tests/support/tcp_proxy.h"
#include "tests/whole/server_copy.h"
#include "tests/whole/watched_run.h"

namespace qmx::test::lost_server {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr const char* kTable = "tssoc200";
constexpr int kOrders = 500;

class LostServer : public CopyIntoAServer {
 protected:
  // A local row that is not the ERP's; all orders of the ERP are newer than the last copy.
  LostServer() : CopyIntoAServer({{"orders", kOrders}}) {
    Sql("insert into tssoc200 (orno) values ('A')");
    company_.Change(DateTime::FromDate(2002, 1, 1), "update tssoc200 set crit = 'NEW'");
  }

  int CopiedOrders() { return std::stoi(Value("select count(*) from tssoc200 where orno <> 'A'")); }

  // Starts a copy and has it stand still once it has saved an order, before it has saved all.
  std::unique_ptr<RunningProcess> HalfACopy(const CopyProcesses& program, std::int16_t syncMethod) {
    const auto start = [&] {
      for (const char* table : {"tssoc200", "tstables"}) Sql(std::string("delete from ") + table);
      Sql("insert into tssoc200 (orno) values ('A')");
      ControlRecord(kTable, syncMethod);
      return program.Start(kTable);
    };
    return StoppedWithin(
        start, [&] { return CopiedOrders() > 0; }, [&] { return CopiedOrders() >= kOrders; });
  }

  template <typename Loss>
  Process Copy(const CopyProcesses& program, std::int16_t syncMethod, Loss&& lose) {
    const auto run = HalfACopy(program, syncMethod);
    lose();
    run->Signal(SIGCONT);
    return run->Wait();
  }

  bool IsLocked(const std::string& order) {
    return Column("select orno from tssoc200 where orno = '" + order + "' for update skip locked").empty();
  }
  void EndTheOthersConnections() {
    others_.AskToEnd();
    others_.AwaitTheirEnd();
  }

  std::uint16_t Port() { return static_cast<std::uint16_t>(std::stoi(OdbcKeyword(ConnectionText(), "PORT"))); }
  CopyProcesses ProgramBehind(const TcpProxy& line) {
    return {company_, WithOdbcKeyword(ConnectionText(), "PORT", std::to_string(line.Port())), ""};
  }

  void KillTheProgramWithin(std::int16_t syncMethod) {
    const CopyProcesses program = Program();
    const auto run = HalfACopy(program, syncMethod);
    run->Signal(SIGKILL);
    EXPECT_EQ(run->Wait().status, 128 + SIGKILL);
    others_.AwaitTheirEnd();
  }

  void ExpectTheLossToBeTold(const CopyProcesses& program, const Process& ended) {
    ExpectFailureOfTheReleaseToo(program, ended, kTable);
    const char* const advice = "The connection to the server is lost; check that the server runs, then copy again.";
    EXPECT_THAT(ended.err, AllOf(HasSubstr(advice), HasSubstr("because of error -2147467159, Copy Service Orders"),
                                 HasSubstr("table: tssoc200"), HasSubstr("key: ")));
    EXPECT_THAT(program.Log(kTable),
                AllOf(HasSubstr("Copy of Service Orders from Orvan to Local DB failed\"\r\n"), HasSubstr(advice)));
    EXPECT_THAT(program.Log(kTable), testing::Not(HasSubstr("Inserted")));
  }

  // Loses the server once the copy has deleted or changed an order that was there before.
  template <typename Loss>
  void ExpectALossInAWholeCopy(std::int16_t syncMethod, Loss&& lose) {
    CopyProcesses program = Program();
    program.Environment("QMX_COPY", "whole");
    Sql("delete from tssoc200");
    Sql("delete from tstables");
    const std::string order = FirstOrders(1);
    for (const std::string& old : {order, std::string("A")})
      Sql("insert into tssoc200 (orno, crit) values ('" + old + "', 'OLD')");
    ControlRecord(kTable, syncMethod);
    const auto run = program.Start(kTable);
    WaitUntil("the copy has deleted or changed the order", [&] { return run->HasEnded() || IsLocked(order); });
    run->Signal(SIGSTOP);
    lose();
    run->Signal(SIGCONT);
    const Process ended = run->Wait();
    ExpectFailureOfTheReleaseToo(program, ended, kTable);
    EXPECT_THAT(ended.err, HasSubstr("The connection to the server is lost; check that the server runs"));
  }

  void ExpectTheOldRowsAndTheFlagAsWithinARun() {
    EXPECT_THAT(Column("select orno from tssoc200 where crit = 'OLD'"),
                testing::UnorderedElementsAre(FirstOrders(1), "A"));
    EXPECT_EQ(Value("select count(*) from tssoc200"), "2");
    EXPECT_EQ(InUse(), "1");
    EXPECT_EQ(Lutm(), kLutm);
  }

  // The first orders in the ERP's order, which is the keys'.
  std::string FirstOrders(std::size_t count) {
    return company_.Value("select group_concat(orno) from (select orno from tssoc200 order by orno limit " +
                          std::to_string(count) + ")");
  }

  void ExpectTheFirstOrdersAndTheFlagAsWithinARun() {
    const std::vector<std::string> copied = Column("select orno from tssoc200 where orno <> 'A' order by orno");
    std::string joined;
    for (const std::string& order : copied) joined += (joined.empty() ? "" : ",") + order;
    EXPECT_LT(copied.size(), std::size_t{kOrders});
    EXPECT_EQ(joined, FirstOrders(copied.size()));
    EXPECT_EQ(InUse(), "1");
    EXPECT_EQ(Lutm(), kLutm);
  }

  // Every order that the lost run has saved is as the next one makes it. A change that is read twice empties the page
  // frequency (docs/changed-copies.md).
  void ExpectRefusalUntilTheFlagIsResetAndThenAllOrders() {
    const bool byChange = Value("select syme from tstables") == "2";
    if (byChange) Sql("update tssoc200 set minu = 0");
    const std::vector<std::string> left = RowTexts(kTable, "orno <> 'A'");
    EXPECT_EQ(Program().Run(kTable).status, 3);
    Sql("update tstables set in_use = 0");
    const Process next = Program().Run(kTable);
    EXPECT_EQ(next.status, 0) << next.err;
    if (byChange) Sql("update tssoc200 set minu = 0");
    const std::vector<std::string> all = RowTexts(kTable, "orno <> 'A'");
    EXPECT_EQ(all.size(), std::size_t{kOrders});
    EXPECT_TRUE(std::includes(all.begin(), all.end(), left.begin(), left.end())) << "an order was saved in half";
    EXPECT_EQ(InUse(), "0");
    EXPECT_NE(Lutm(), kLutm);
  }

  ServerSessions others_{database_.Quiet(), IsPostgresql()};
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(LostServer);
INSTANTIATE_TEST_SUITE_P(Over, LostServer, testing::ValuesIn(ServersUnderTest()), ServerName);

TEST_P(LostServer, WhichEndsTheConnectionInAFullCopyKeepsTheFirstRowsAndTheTableInProgress) {
  const CopyProcesses program = Program();
  const Process ended = Copy(program, kFullCopy, [&] { EndTheOthersConnections(); });
  ExpectTheLossToBeTold(program, ended);
  ExpectTheFirstOrdersAndTheFlagAsWithinARun();
  EXPECT_EQ(Value("select orno from tssoc200 where orno = 'A'"), "no row");
  ExpectRefusalUntilTheFlagIsResetAndThenAllOrders();
}

TEST_P(LostServer, WhichEndsTheConnectionInAChangedCopyKeepsTheFirstChangesAndTheTableInProgress) {
  const CopyProcesses program = Program();
  const Process ended = Copy(program, kOnlyChanged, [&] { EndTheOthersConnections(); });
  ExpectTheLossToBeTold(program, ended);
  ExpectTheFirstOrdersAndTheFlagAsWithinARun();
  EXPECT_EQ(Value("select orno from tssoc200 where orno = 'A'"), "A");
  ExpectRefusalUntilTheFlagIsResetAndThenAllOrders();
}

TEST_P(LostServer, WhichEndsTheConnectionInAWholeCopyKeepsTheOldRowsAndTheTableInProgress) {
  for (const std::int16_t syncMethod : {kFullCopy, kOnlyChanged}) {
    SCOPED_TRACE(syncMethod);
    ExpectALossInAWholeCopy(syncMethod, [&] { EndTheOthersConnections(); });
    ExpectTheOldRowsAndTheFlagAsWithinARun();
  }
}

TEST_P(LostServer, BehindACutLineIsReportedAsLostToo) {
  TcpProxy line(Port());
  const CopyProcesses program = ProgramBehind(line);
  const Process ended = Copy(program, kFullCopy, [&] { line.Cut(); });
  ExpectTheLossToBeTold(program, ended);
  ExpectTheFirstOrdersAndTheFlagAsWithinARun();
}

TEST_P(LostServer, BehindAHalfClosedLineIsReportedAsLostToo) {
  TcpProxy line(Port());
  const CopyProcesses program = ProgramBehind(line);
  const Process ended = Copy(program, kFullCopy, [&] { line.HalfClose(); });
  ExpectTheLossToBeTold(program, ended);
  ExpectTheFirstOrdersAndTheFlagAsWithinARun();
}

TEST_P(LostServer, BehindASlowLineIsNotLost) {
  TcpProxy line(Port());
  line.Delay(std::chrono::milliseconds(20));
  ControlRecord(kTable, kFullCopy);
  const Process ended = ProgramBehind(line).Run(kTable);
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(CopiedOrders(), kOrders);
  EXPECT_EQ(InUse(), "0");
}

using KilledProgram = LostServer;
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(KilledProgram);
INSTANTIATE_TEST_SUITE_P(Over, KilledProgram, testing::ValuesIn(ServersUnderTest()), ServerName);

TEST_P(KilledProgram, LeavesInAFullCopyTheFirstRowsAndTheTableInProgress) {
  KillTheProgramWithin(kFullCopy);
  ExpectTheFirstOrdersAndTheFlagAsWithinARun();
  EXPECT_EQ(Value("select orno from tssoc200 where orno = 'A'"), "no row");
  ExpectRefusalUntilTheFlagIsResetAndThenAllOrders();
}

TEST_P(KilledProgram, LeavesInAChangedCopyTheFirstChangesAndTheTableInProgress) {
  KillTheProgramWithin(kOnlyChanged);
  ExpectTheFirstOrdersAndTheFlagAsWithinARun();
  EXPECT_EQ(Value("select orno from tssoc200 where orno = 'A'"), "A");
  ExpectRefusalUntilTheFlagIsResetAndThenAllOrders();
}

// Only if the servers were started for these tests alone.
std::vector<DriverUnderTest> ServersThatMayBeKilled() {
  return std::getenv("QMX_TEST_MAY_KILL_SERVERS") ? ServersUnderTest() : std::vector<DriverUnderTest>();
}

class KilledServer : public LostServer {
 protected:
  void KillTheServer() {
    const pid_t server = std::stoi(std::getenv(IsPostgresql() ? "QMX_TEST_POSTGRESQL_PID" : "QMX_TEST_MARIADB_PID"));
    const std::string process = "/proc/" + std::to_string(server);
    const std::filesystem::path now = std::filesystem::read_symlink(process + "/cwd");
    folder_ = IsPostgresql() ? now.parent_path() : now;  // PostgreSQL has gone into its data
    std::istringstream words(ReadFile(process + "/cmdline"));
    for (std::string word; std::getline(words, word, '\0');) {
      if (!word.starts_with("--init-file")) commandLine_.push_back(word);  // its users are there
    }
    struct stat owner {};
    ASSERT_EQ(stat(process.c_str(), &owner), 0);
    user_ = std::to_string(owner.st_uid);
    group_ = std::to_string(owner.st_gid);
    kill(server, IsPostgresql() ? SIGQUIT : SIGKILL);  // PostgreSQL's processes outlive a parent that is killed
    WaitUntil("nobody can connect", [&] {
      try {
        OdbcConnection another(ConnectionText());
        return false;
      } catch (const Error&) {
        return true;
      }
    });
  }

  // With its data and by its own command line. It recovers what it had confirmed.
  void StartTheServerAgain() {
    std::vector<std::string> words = {"--pdeathsig", "QUIT"};
    if (geteuid() == 0) words.insert(words.begin(), {"--reuid", user_, "--regid", group_, "--clear-groups", "setpriv"});
    commandLine_[0] = std::filesystem::exists(commandLine_[0]) ? commandLine_[0] : "/usr/sbin/" + commandLine_[0];
    words.insert(words.end(), commandLine_.begin(), commandLine_.end());
    server_ =
        std::make_unique<RunningProcess>("/usr/bin/setpriv", words, std::map<std::string, std::string>{}, folder_);
    WaitUntil("the server answers again", [&] {
      if (server_->HasEnded()) throw std::runtime_error("the server does not start again: " + server_->Wait().err);
      try {
        OdbcConnection another(ConnectionText());
        return true;
      } catch (const Error&) {
        return false;
      }
    });
  }

  void ConnectOnceTheServerRunsAgain() {
    StartTheServerAgain();
    try {
      database_.Quiet().Close();
    } catch (const Error&) {  // it is lost
    }
    database_.Quiet().Open(ConnectionText(), "", "");
  }

  void ExpectTheConfirmedOrdersOnceTheServerRunsAgain() {
    ConnectOnceTheServerRunsAgain();
    ExpectTheFirstOrdersAndTheFlagAsWithinARun();
    EXPECT_GT(CopiedOrders(), 0);
    ExpectRefusalUntilTheFlagIsResetAndThenAllOrders();
  }

  void ExpectALossAndThenNoAnswer(std::int16_t syncMethod) {
    const CopyProcesses program = Program();
    ExpectTheLossToBeTold(program, Copy(program, syncMethod, [&] { KillTheServer(); }));
    const Process next = program.Run(kTable);
    EXPECT_EQ(next.status, 2);
    EXPECT_THAT(next.err, HasSubstr("Check the server's address and whether it runs."));
    ExpectTheConfirmedOrdersOnceTheServerRunsAgain();
  }

 private:
  std::vector<std::string> commandLine_;
  std::string folder_, user_, group_;
  std::unique_ptr<RunningProcess> server_;  // the second one
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(KilledServer);
INSTANTIATE_TEST_SUITE_P(Over, KilledServer, testing::ValuesIn(ServersThatMayBeKilled()), ServerName);

TEST_P(KilledServer, InAFullCopyIsReportedAsLostAndHasTheConfirmedRowsWhenItRunsAgain) {
  ExpectALossAndThenNoAnswer(kFullCopy);
}

TEST_P(KilledServer, InAChangedCopyIsReportedAsLostAndHasTheConfirmedRowsWhenItRunsAgain) {
  ExpectALossAndThenNoAnswer(kOnlyChanged);
}

TEST_P(KilledServer, InAWholeCopyHasTheOldRowsWhenItRunsAgain) {
  ExpectALossInAWholeCopy(kFullCopy, [&] { KillTheServer(); });
  ConnectOnceTheServerRunsAgain();
  ExpectTheOldRowsAndTheFlagAsWithinARun();
}

// Read-only for everybody but administrators: each server refuses the transaction that is open with its COMMIT.
class ReadOnlyServer : public LostServer {
 protected:
  ~ReadOnlyServer() override { Sql("set global read_only = 0"); }

  CopyProcesses ProgramOfAClerk() {
    Sql("create user clerk@'127.0.0.1' identified by 'clerk'");
    for (const char* table : {"tssoc200", "tstables"}) {
      Sql(std::string("grant select, insert, update, delete on ") + table + " to clerk@'127.0.0.1'");
    }
    return {company_, WithOdbcKeyword(WithOdbcKeyword(ConnectionText(), "UID", "clerk"), "PWD", "clerk"), ""};
  }

  // The server shows what it knew up to a tenth of a second ago.
  bool IsATransactionOpen() {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    return Value("select count(*) from information_schema.innodb_trx where trx_rows_modified > 0") != "0";
  }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ReadOnlyServer);
// The other server can only be made read-only for the transactions to come.
INSTANTIATE_TEST_SUITE_P(Over, ReadOnlyServer,
                         testing::ValuesIn(std::getenv("QMX_TEST_MAY_KILL_SERVERS")
                                               ? DriversUnderTest([](const auto& one) { return one.name == "MariaDB"; })
                                               : std::vector<DriverUnderTest>()),
                         ServerName);

TEST_P(ReadOnlyServer, WhichRefusesTheCommitKeepsTheRowsSavedBeforeAndReportsIt) {
  const CopyProcesses program = ProgramOfAClerk();
  const auto run = HalfACopy(program, kOnlyChanged);
  WaitUntil("a transaction is open", [&] {
    if (IsATransactionOpen()) return true;
    run->Signal(SIGCONT);
    run->Signal(SIGSTOP);
    return false;
  });
  const std::string saved = Value("select count(*) from tssoc200");
  Sql("set global read_only = 1");
  run->Signal(SIGCONT);
  const Process ended = run->Wait();
  ExpectFailureOfTheReleaseToo(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("native code: 1290"), HasSubstr("table: tssoc200"), HasSubstr("key: ")));
  ExpectTheFirstOrdersAndTheFlagAsWithinARun();
  EXPECT_EQ(Value("select count(*) from tssoc200"), saved);

  Sql("set global read_only = 0");
  ExpectRefusalUntilTheFlagIsResetAndThenAllOrders();
}

}  // namespace
}  // namespace qmx::test::lost_server
