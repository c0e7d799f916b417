// QMX_COPY=whole, as its user runs it: readers see the old orders or the new ones, whenever they look and wherever the
// run ends.
#include <sqlite3.h>

#include <csignal>
#include <cstdlib>
#include <random>

#include "tests/whole/server_copy.h"
#include "tests/whole/watched_run.h"

namespace qmx::test::whole_mode {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::HasSubstr;

constexpr const char* kTable = "tssoc200";
constexpr int kOrders = 400;
constexpr int kKilled = 128 + SIGKILL;

// How many runs are killed: QMX_TEST_KILLS, or a few.
int Kills() {
  const char* const kills = std::getenv("QMX_TEST_KILLS");
  return kills ? std::atoi(kills) : 4;
}

// The only one, or each of the three if that is empty.
std::vector<DriverUnderTest> Systems(const std::string& only) {
  return DriversUnderTest([&](const DriverUnderTest& driver) {
    if (!only.empty()) return driver.name == only;
    return driver.name == "SQLite" || driver.name == "PostgreSQL" || driver.name == "MariaDB";
  });
}

struct WholeCopies : CopyProcesses {
  WholeCopies(const Company& company, const std::string& connection) : CopyProcesses(company, connection, "") {
    Environment("QMX_COPY", "whole");
  }
};

constexpr const char* kSum = "select count(*) * 100000 + sum(case when crit = 'OLD' then 1 else 0 end) from tssoc200";

// Another program that reads an SQLite file.
class OtherReader {
 public:
  OtherReader(const std::string& file, int milliseconds) {
    sqlite3_open(file.c_str(), &database_);
    sqlite3_busy_timeout(database_, milliseconds);
  }
  ~OtherReader() { sqlite3_close(database_); }
  OtherReader(const OtherReader&) = delete;
  OtherReader& operator=(const OtherReader&) = delete;

  // Returns the sum, or why it cannot be read.
  std::string Sum() {
    std::string sum;
    const auto keep = [](void* to, int, char** values, char**) {
      *static_cast<std::string*>(to) = values[0];
      return 0;
    };
    const int code = sqlite3_exec(database_, kSum, keep, &sum, nullptr);
    return code == SQLITE_OK ? sum : sqlite3_errmsg(database_);
  }

 private:
  sqlite3* database_ = nullptr;
};

// Before the run some orders are missing, one is no order of the ERP's, and all are of another day. Afterwards all are
// as the ERP has them.
class WholeMode : public CopyIntoAServer {
 protected:
  WholeMode() : CopyIntoAServer({{"orders", kOrders}}) {
    company_.Change(DateTime::FromDate(2002, 1, 1), "update tssoc200 set crit = 'NEW'");
  }

  bool IsSqlite() const { return GetParam().name == "SQLite"; }

  WholeCopies Whole() { return {company_, ConnectionText()}; }

  void Prepare(std::int16_t method) {
    method_ = method;
    ControlRecord(kTable, kFullCopy);
    const Process first = CopyProcesses(company_, ConnectionText(), "").Run(kTable);
    ASSERT_EQ(first.status, 0) << first.err;
    BeginAnew();
    old_ = State();
    EXPECT_EQ(Whole().Run(kTable).status, 0);
    new_ = State();
    EXPECT_NE(old_, new_);
    BeginAnew();
    EXPECT_EQ(State(), old_);
  }

  void BeginAnew() {
    Sql("update tssoc200 set crit = 'OLD'");
    Sql("delete from tssoc200 where orno = 'A' or orno like '%7'");
    Sql("insert into tssoc200 (orno, crit) values ('A', 'OLD')");
    Sql(std::string("update tstables set in_use = 0, syme = ") + std::to_string(method_) + ", lutm = '" + kLutm + "'");
  }

  // One number for all rows, and every row.
  std::string Sum() { return Value(kSum); }
  std::vector<std::string> State() {
    std::vector<std::string> rows =
        Column(IsSqlite() || IsPostgresql() ? "select orno || ' ' || crit from tssoc200 order by orno"
                                            : "select concat(orno, ' ', crit) from tssoc200 order by orno");
    return rows;
  }
  static std::string SumOf(const std::vector<std::string>& state) {
    int old = 0;
    for (const std::string& row : state) old += row.ends_with("OLD") ? 1 : 0;
    return std::to_string(state.size() * 100000 + static_cast<std::size_t>(old));
  }

  // Reads all the time until the run has ended, or until it is killed.
  void Watch(RunningProcess& run, std::optional<std::chrono::steady_clock::time_point> kill = {}) {
    const std::string before = SumOf(old_);
    const std::string after = SumOf(new_);
    while (!run.HasEnded()) {
      if (kill && std::chrono::steady_clock::now() >= *kill) {
        run.Signal(SIGKILL);
        return;
      }
      const std::string sum = Sum();
      EXPECT_THAT(sum, AnyOf(before, after));
      ++looks_;
      if (HasFailure()) return;
    }
  }

  void ExpectOldOrNew() {
    const std::vector<std::string> rows = State();
    EXPECT_THAT((std::vector{old_, new_}), Contains(rows));
    EXPECT_EQ(rows == new_, Lutm() != kLutm);
  }

  std::int16_t method_ = kFullCopy;
  int looks_ = 0;
  std::vector<std::string> old_, new_;
};
INSTANTIATE_TEST_SUITE_P(Over, WholeMode, testing::ValuesIn(Systems("")), ServerName);

using WholeModeInAFile = WholeMode;
INSTANTIATE_TEST_SUITE_P(Over, WholeModeInAFile, testing::ValuesIn(Systems("SQLite")), ServerName);

class WholeModeOnAServer : public WholeMode {
 protected:
  // As another program, which waits for a lock at most a second.
  std::string Insert(const std::string& table, const std::string& column) {
    OdbcConnection another(ConnectionText());
    another.Run(IsPostgresql() ? "set lock_timeout to 1000" : "set session innodb_lock_wait_timeout = 1");
    try {
      another.Run("insert into " + table + " (" + column + ") values ('B')");
      return "done";
    } catch (const Error& error) {
      return error.Description();
    }
  }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WholeModeOnAServer);
INSTANTIATE_TEST_SUITE_P(Over, WholeModeOnAServer, testing::ValuesIn(ServersUnderTest()), ServerName);

using WholeModeOnMariadb = WholeMode;
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WholeModeOnMariadb);
INSTANTIATE_TEST_SUITE_P(Over, WholeModeOnMariadb, testing::ValuesIn(Systems("MariaDB")), ServerName);

TEST_P(WholeMode, ShowsAReaderInAnotherProcessTheOldOrdersOrTheNewOnes) {
  for (const std::int16_t method : {kFullCopy, kOnlyChanged}) {
    SCOPED_TRACE(method);
    Sql("delete from tstables");
    Prepare(method);
    const WholeCopies program = Whole();
    const auto run = program.Start(kTable);
    Watch(*run);
    const Process ended = run->Wait();
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(State(), new_);
    EXPECT_GT(looks_, 3);
  }
}

// The last program that closes the file locks it, also against readers, while it empties the journal.
TEST_P(WholeModeInAFile, HindersNoReaderThatKeepsItOpenOrWaitsForALock) {
  Prepare(kFullCopy);
  const TempFolder folder;
  const std::string file = folder / "own.db";  // the test's own connection keeps the other file open
  Sql("vacuum into '" + file + "'");
  const WholeCopies program(company_, "Provider=SQLite;Data Source=" + file);
  const auto copyWhile = [&](const std::function<std::string()>& look) {
    for (int copy = 0; copy < 4; ++copy) {
      const auto run = program.Start(kTable);
      while (!run->HasEnded()) {
        ASSERT_EQ(look(), SumOf(new_));
        ++looks_;
      }
      const Process ended = run->Wait();
      EXPECT_EQ(ended.status, 0) << ended.err;
    }
  };
  EXPECT_EQ(program.Run(kTable).status, 0);
  copyWhile([&] { return OtherReader(file, 60000).Sum(); });
  OtherReader keepsItOpen(file, 0);
  copyWhile([&] { return keepsItOpen.Sum(); });
  EXPECT_GT(looks_, 20);
}

TEST_P(WholeMode, LeavesTheOldOrdersOrTheNewOnesWheneverItIsKilled) {
  std::mt19937 dice(20261122);
  for (const std::int16_t method : {kFullCopy, kOnlyChanged}) {
    Sql("delete from tstables");
    Prepare(method);
    const WholeCopies program = Whole();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(program.Run(kTable).status, 0);
    const auto whole = std::chrono::steady_clock::now() - begin;
    int inTime = 0;
    for (int kill = 0; kill < Kills(); ++kill) {
      SCOPED_TRACE("method " + std::to_string(method) + ", kill " + std::to_string(kill));
      BeginAnew();
      {
        const auto run = program.Start(kTable);
        Watch(*run, std::chrono::steady_clock::now() + whole * static_cast<int>(dice() % 1000) / 1000);
        inTime += run->Wait().status == kKilled ? 1 : 0;
      }
      ExpectOldOrNew();
      if (HasFailure()) return;
    }
    EXPECT_GT(inTime, 0);
    Sql("update tstables set in_use = 0");
    EXPECT_EQ(program.Run(kTable).status, 0);
    EXPECT_EQ(State(), new_);
  }
}

TEST_P(WholeMode, LeavesTheOldOrdersWhenItIsInterrupted) {
  Prepare(kFullCopy);
  const WholeCopies program = Whole();
  const auto run = program.Start(kTable);
  WaitUntil("the flag is set", [&] { return InUse() == "1" || run->HasEnded(); });
  if (!run->HasEnded()) run->Signal(SIGTERM);
  const Process ended = run->Wait();
  EXPECT_THAT(ended.status, AnyOf(0, 1)) << ended.err;
  EXPECT_EQ(State(), ended.status == 0 ? new_ : old_);
  EXPECT_EQ(InUse(), "0");
  ExpectOldOrNew();
}

TEST_P(WholeModeInAFile, ChangesNothingOnAFullDisk) {
  Prepare(kFullCopy);
  const WholeCopies program = Whole();
  TempFolder folder;
  const std::map<std::string, std::string> environment = {
      {"QMX_COMPONENTS", SANDBOX_COMPONENTS}, {"QMX_COPY", "whole"}, {"LC_ALL", "C"}};
  bool hasFailed = false;
  for (const char* blocks : {"100", "200", "300", "400"}) {  // of 512 bytes, of which the file itself has more
    SCOPED_TRACE(blocks);
    BeginAnew();
    Sql("pragma wal_checkpoint(truncate)");
    const Process ended = test::Run("/bin/sh",
                                    {"-c", std::string("trap '' XFSZ; ulimit -f ") + blocks + "; exec \"$0\" \"$1\"",
                                     QMXDATACOPY, program.CommandLine(kTable)},
                                    environment, folder.Path());
    hasFailed = hasFailed || ended.status != 0;
    ExpectOldOrNew();
    EXPECT_EQ(Value("pragma integrity_check"), "ok");
    if (ended.status == 0) {
      EXPECT_EQ(State(), new_);
    }
  }
  EXPECT_TRUE(hasFailed);
}

TEST_P(WholeMode, OfTwoTablesAtOnceBothSucceed) {
  Prepare(kFullCopy);
  const WholeCopies program = Whole();
  const auto orders = program.Start(kTable);
  const auto activities = program.Start("tssoc210");
  for (RunningProcess* run : {orders.get(), activities.get()}) {
    const Process ended = run->Wait();
    EXPECT_EQ(ended.status, 0) << ended.err;
  }
  EXPECT_EQ(State(), new_);
  EXPECT_NE(Value("select count(*) from tssoc210"), "0");
  EXPECT_EQ(Value("select count(*) from tstables where in_use = 0"), "2");
}

// MariaDB's deletion of all rows also locks the gaps between them.
TEST_P(WholeModeOnAServer, LetsOthersWriteOtherTablesAndOnPostgresqlOtherRows) {
  Prepare(kFullCopy);
  const WholeCopies program = Whole();
  const auto run = StoppedWithin(
      [&] {
        Sql("delete from tssoc200 where orno = 'B'");
        BeginAnew();
        return program.Start(kTable);
      },
      [&] { return Column("select orno from tssoc200 where orno = 'A' for update skip locked").empty(); },
      [&] { return State() == new_; });
  EXPECT_EQ(Insert("tsmdm030", "cstp"), "done");
  EXPECT_THAT(Insert("tssoc200", "orno"), HasSubstr(IsPostgresql() ? "done" : "Lock wait timeout exceeded"));
  run->Signal(SIGCONT);
  const Process ended = run->Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(Value("select count(*) from tssoc200 where orno = 'B'"), IsPostgresql() ? "1" : "0");
  Sql("delete from tssoc200 where orno = 'B'");
  EXPECT_EQ(State(), new_);
}

TEST_P(WholeModeOnMariadb, IsRefusedForATableWithoutTransactionsBeforeAnythingIsTouched) {
  Prepare(kFullCopy);
  for (const char* table : {"tssoc200", "tstables"}) {
    SCOPED_TRACE(table);
    Sql(std::string("alter table ") + table + " engine=MyISAM");
    const Process ended = Whole().Run(kTable);
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, AllOf(HasSubstr(std::string("The rows of the table ") + table +
                                           " cannot be committed together: its storage engine has no transactions."),
                                 HasSubstr("[table: ")));
    EXPECT_EQ(State(), old_);
    EXPECT_EQ(InUse(), "0");
    EXPECT_EQ(Lutm(), kLutm);
    Sql(std::string("alter table ") + table + " engine=InnoDB");
  }
}

}  // namespace
}  // namespace qmx::test::whole_mode
