// Refusals of a database server during a copy, as users see them: the chain of causes on standard error with one
// sentence of advice, the exit status, the logs, the scheduling server's messages, and the tables afterwards.
#include "tests/whole/server_copy.h"

namespace qmx::test::server_refusals {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kTable = "tsmdm030";
constexpr const char* kRows = "select cstp from tsmdm030 order by cstp";

class ServerRefusal : public CopyIntoAServer {
 protected:
  // The ERP has the service types ADV, CAL, CON and further ones, the local table has OLD.
  ServerRefusal() : CopyIntoAServer({{"service-types", 12}}) {
    Sql("insert into tsmdm030 (cstp, dsca) values ('OLD', 'Older')");
  }

  void TableInsteadOf(const std::string& columns, const std::string& options = "") {
    Sql("drop table tsmdm030");
    Sql("create table tsmdm030 (" + columns + ")" + options);
  }

  // Connects as a user who has these rights on the table and all that is needed on the control records.
  std::string ConnectionTextOfAClerk(const std::string& rights) {
    const std::string name = "clerk_" + database_.Quiet().defaultdatabase();
    const std::string clerk = name + (IsPostgresql() ? "" : "@'127.0.0.1'");
    Sql(IsPostgresql() ? "create role " + clerk + " login password 'clerk'"
                       : "create user " + clerk + " identified by 'clerk'");
    Sql("grant select, insert, update on tstables to " + clerk);
    Sql("grant " + rights + " on tsmdm030 to " + clerk);
    return WithOdbcKeyword(WithOdbcKeyword(ConnectionText(), "UID", name), "PWD", "clerk");
  }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ServerRefusal);
INSTANTIATE_TEST_SUITE_P(Over, ServerRefusal, testing::ValuesIn(ServersUnderTest()), ServerName);

std::vector<DriverUnderTest> ServerNamed(const std::string& name) {
  return DriversUnderTest([&](const DriverUnderTest& driver) { return driver.name == name; });
}

class ServerRefusalOnPostgresql : public ServerRefusal {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ServerRefusalOnPostgresql);
INSTANTIATE_TEST_SUITE_P(Over, ServerRefusalOnPostgresql, testing::ValuesIn(ServerNamed("PostgreSQL")), ServerName);

class ServerRefusalOnMariadb : public ServerRefusal {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ServerRefusalOnMariadb);
INSTANTIATE_TEST_SUITE_P(Over, ServerRefusalOnMariadb, testing::ValuesIn(ServerNamed("MariaDB")), ServerName);

TEST_P(ServerRefusalOnPostgresql, OfRowsThatAnotherProgramLockedKeepsThemAndReleasesTheTable) {
  ControlRecord(kTable, kFullCopy);
  OdbcConnection another(ConnectionText());
  another.Begin();
  another.Run("update tsmdm030 set dsca = 'Locked'");
  // As long as the program itself would wait, no test can.
  const CopyProcesses program = ProgramThatRunsFirst("set lock_timeout to 300");
  const Process ended = program.Run(kTable);
  another.Rollback();
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error -2147217671, Copy Service Types: "),
                               HasSubstr("because of error -2147217771, Delete All Records: "),
                               HasSubstr("It took longer than the command time-out allows; where somebody else holds a "
                                         "lock, let that be released."),
                               HasSubstr("statement: DELETE FROM tsmdm030 WHERE 1=1")));
  EXPECT_THAT(Column(kRows), ElementsAre("OLD"));
}

// A lock that was not released in time is waited for again, until the program's own time-out.
TEST_P(ServerRefusalOnMariadb, OfRowsThatAnotherProgramLockedIsTriedAgainUntilItReleasesThem) {
  ControlRecord(kTable, kFullCopy);
  OdbcConnection another(ConnectionText());
  another.Begin();
  another.Run("update tsmdm030 set dsca = 'Locked'");
  const auto waits = [&] { return std::stoi(another.AskText("show global status like 'Innodb_row_lock_waits'", 1)); };
  const int before = waits();
  const CopyProcesses program = ProgramThatRunsFirst("set session innodb_lock_wait_timeout = 1");
  const auto run = program.Start(kTable);
  WaitUntil("the program waits for the second time", [&] { return run->HasEnded() || waits() >= before + 2; });
  another.Rollback();
  const Process ended = run->Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(program.File("QMXRuns.jsonl"), AllOf(HasSubstr("\"retries\":"), Not(HasSubstr("\"retries\":0"))));
  EXPECT_EQ(Value("select count(*) from tsmdm030"), "12");
}

TEST_P(ServerRefusal, OfEveryChangeIsReportedBeforeAnythingIsCopied) {
  ControlRecord(kTable, kFullCopy);
  const CopyProcesses program = ProgramThatRunsFirst(IsPostgresql() ? "set default_transaction_read_only to on"
                                                                    : "set session transaction read only");
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error 70, Set Data Copy In Progress: "), HasSubstr("SQLSTATE 25006"),
                               HasSubstr("The database is read-only; make it writable, then copy again.")));
  EXPECT_THAT(program.Board(), Not(HasSubstr("started")));
  EXPECT_THAT(Column(kRows), ElementsAre("OLD"));
}

TEST_P(ServerRefusal, OfARowThatHasNoRoomKeepsTheRowsBeforeIt) {
  ControlRecord(kTable, kFullCopy);
  if (IsPostgresql()) {  // has no limit of its own that would make it say so
    OdbcConnection(ConnectionText())
        .Run(
            "create function refuse() returns trigger language plpgsql as $$ begin raise 'could not extend file: No "
            "space left on device' using errcode = 'disk_full'; end $$");
    Sql("create trigger full_space before insert on tsmdm030 for each row when (new.cstp > 'CAL') execute function "
        "refuse()");
  } else {
    Sql("set session max_heap_table_size = 16384");
    TableInsteadOf("cstp varchar(10) primary key, dsca varchar(2000), prod varchar(10), ract varchar(10)",
                   " engine = memory");
    Sql("insert into tsmdm030 (cstp) values ('OLD')");
  }
  const CopyProcesses program = Program();
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error 161, Copy Service Types: "), HasSubstr("because of error 61, ODBC: "),
                               HasSubstr("The server's disk is full; free disk space, then copy again."),
                               HasSubstr("table: tsmdm030; key: cstp='")));
  const std::vector<std::string> rows = Column(kRows);
  ASSERT_FALSE(rows.empty());
  EXPECT_EQ(rows[0], "ADV");
  EXPECT_LT(rows.size(), 6u);
}

TEST_P(ServerRefusal, OfATextThatIsLongerThanItsColumnNamesTheRowAndKeepsThoseBeforeIt) {
  ControlRecord(kTable, kFullCopy);
  TableInsteadOf("cstp varchar(10) primary key, dsca varchar(9), prod varchar(10), ract varchar(10)");
  const CopyProcesses program = Program();
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error -2147217800, Copy Service Types: "), HasSubstr("SQLSTATE 22001"),
                               HasSubstr("Widen the column, or shorten the value in the ERP."),
                               HasSubstr("table: tsmdm030; key: cstp='CAL'")));
  EXPECT_THAT(Column(kRows), ElementsAre("ADV"));
}

TEST_P(ServerRefusal, ToDistinguishEqualRowsWithoutAKeyChangesNeither) {
  ControlRecord(kTable, kOnlyChanged);
  TableInsteadOf("cstp varchar(10), dsca varchar(60), prod varchar(10), ract varchar(10)");
  Sql("insert into tsmdm030 values ('ADV', 'x', 'y', 'z'), ('ADV', 'x', 'y', 'z'), ('CAL', 'x', 'y', 'z')");
  company_.Change(DateTime::FromDate(2002, 1, 1), "update tsmdm030 set \"desc\" = 'New' where cstp in ('ADV', 'CAL')");
  const CopyProcesses program = Program();
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error -2147217764, Copy Service Types - Only Changed: "),
                               HasSubstr("several rows are equal to it. Give the table a primary key, then copy it in "
                                         "full. [table: tsmdm030; key: cstp='ADV', ")));
  EXPECT_THAT(Column("select dsca from tsmdm030"), ElementsAre("x", "x", "x"));
}

TEST_P(ServerRefusal, DoesNotHappenIfTheRowsOfATableWithoutAKeyDiffer) {
  ControlRecord(kTable, kOnlyChanged);
  TableInsteadOf("cstp varchar(10), dsca varchar(60), prod varchar(10), ract varchar(10)");
  Sql("insert into tsmdm030 values ('ADV', 'x', 'y', 'z'), ('CAL', 'x', null, 'z')");
  company_.Change(DateTime::FromDate(2002, 1, 1), "update tsmdm030 set \"desc\" = 'New' where cstp in ('ADV', 'CAL')");
  const Process ended = Program().Run(kTable);
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(Column("select dsca from tsmdm030"), ElementsAre("New", "New"));
}

TEST_P(ServerRefusal, ToDeleteForAUserWithoutThatRightKeepsTheRows) {
  ControlRecord(kTable, kFullCopy);
  const CopyProcesses program(company_, ConnectionTextOfAClerk("select, insert, update"), "");
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error 270, Copy Service Types: "), HasSubstr("denied"),
                               HasSubstr("because of error 170, Delete All Records: "),
                               HasSubstr("Grant the missing privileges to the user (docs/databases.md lists them).")));
  EXPECT_THAT(Column(kRows), ElementsAre("OLD"));
}

TEST_P(ServerRefusal, ToAddForAUserWithoutThatRightComesAfterTheDeleting) {
  ControlRecord(kTable, kFullCopy);
  const CopyProcesses program(company_, ConnectionTextOfAClerk("select, update, delete"), "");
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error 170, Copy Service Types: "), HasSubstr("because of error 70, ODBC: "),
                               HasSubstr("denied"), HasSubstr("Grant the missing privileges to the user"),
                               HasSubstr("table: tsmdm030")));
  EXPECT_THAT(Column(kRows), ElementsAre());
}

TEST_P(ServerRefusal, ToReadForAUserWithoutThatRightIsReportedInAChangedCopyToo) {
  ControlRecord(kTable, kOnlyChanged);
  company_.Change(DateTime::FromDate(2002, 1, 1), "update tsmdm030 set \"desc\" = 'New' where cstp = 'ADV'");
  const CopyProcesses program(company_, ConnectionTextOfAClerk("insert, update, delete"), "");
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(StartsWith("error 170, Copy Service Types - Only Changed: "), HasSubstr("denied"),
                               HasSubstr("Grant the missing privileges to the user"), HasSubstr("table: tsmdm030")));
  EXPECT_THAT(Column(kRows), ElementsAre("OLD"));
}

}  // namespace
}  // namespace qmx::test::server_refusals
