#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class QmxAdminInit : public testing::Test {
 protected:
  Process Init(const std::string& database = "", const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"init", connectionText, database};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return test::Run(QMX_ADMIN, arguments);
  }

  std::int32_t Count(const std::string& query) {
    Connection connection({&driver}, nullptr);
    connection.Open(connectionText, "", "");
    Recordset records(nullptr);
    records.Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.Fields(0).Value().ToInt32();
  }

  void Execute(const std::string& statement) {
    Connection connection({&driver}, nullptr);
    connection.Open(connectionText + ";Mode=Create", "", "");
    connection.Execute(statement);
    connection.Close();
  }

  static std::size_t Lines(const std::string& text, const std::string& ending) {
    std::size_t count = 0;
    for (std::size_t at = text.find(ending + "\n"); at != std::string::npos; at = text.find(ending + "\n", at + 1)) {
      ++count;
    }
    return count;
  }

  TempFolder folder;
  SqliteDriver driver;
  std::string connectionText = "Provider=SQLite;Data Source=" + folder / "local.db";
};

constexpr const char* kTables = "select count(*) from sqlite_master where type='table'";

TEST_F(QmxAdminInit, MakesTheDatabaseAndAllItsTables) {
  const Process run = Init();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Lines(run.out, ": created"), 19U);
  EXPECT_THAT(run.out, HasSubstr("tsmdm030: created\n"));
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_EQ(Count(kTables), 19);
  EXPECT_EQ(Count("select count(*) from sqlite_master where name='tscalender_by_ccal'"), 1);
}

TEST_F(QmxAdminInit, DoesNotChangeExistingTablesAndSaysSo) {
  Init();
  Execute("insert into tsmdm030 (cstp, dsca) values ('A','kept')");
  const Process again = Init();
  EXPECT_EQ(again.status, 0) << again.err;
  EXPECT_EQ(Lines(again.out, ": exists"), 19U);
  EXPECT_EQ(Count("select count(*) from tsmdm030 where dsca='kept'"), 1);
}

TEST_F(QmxAdminInit, MakesOnlyWhatIsMissing) {
  Init();
  Execute("drop table tssoc200");
  Execute("drop index tscalender_by_ccal");
  const Process run = Init();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.out, ": created"), 1U);
  EXPECT_THAT(run.out, HasSubstr("tssoc200: created\n"));
  EXPECT_EQ(Count("select count(*) from sqlite_master where name='tscalender_by_ccal'"), 1);
}

TEST_F(QmxAdminInit, PrintsDifferencesChangesNothingAndEndsWithStatusOne) {
  Execute("create table tsmdm030 (CSTP integer, dsca varchar(10), ract text, note text)");
  const Process run = Init();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("tsmdm030: differs\n"
                                 "  the column cstp holds 32-bit integers, not texts\n"
                                 "  the column prod is missing\n"
                                 "  the column note is not expected\n"
                                 "  it has no key, not the key cstp\n"));
  EXPECT_EQ(Lines(run.out, ": created"), 18U);
  EXPECT_THAT(run.out, HasSubstr("Tables that differ were not changed."));
  EXPECT_EQ(Count("select count(*) from pragma_table_info('tsmdm030')"), 4);
}

TEST_F(QmxAdminInit, PrintsTheStatementsAndTouchesNothing) {
  const Process run = Init("", {"--print"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Lines(run.out, "\n)") + Lines(run.out, ");"), 21U);  // nineteen tables and two indexes
  EXPECT_THAT(run.out, AllOf(HasSubstr("create table tstables ("), HasSubstr("in_use smallint default 0"),
                             HasSubstr("primary key (ccal, ract, stdt, sttm)\n);\n"),
                             HasSubstr("create index if not exists tscalender_by_ccal on tscalender (ccal);\n")));
  EXPECT_FALSE(std::filesystem::exists(folder / "local.db"));
}

TEST_F(QmxAdminInit, PrintsTheStatementsForASystemThatIsNotAtHand) {
  const Process mariadb = test::Run(QMX_ADMIN, {"init", "--print-for", "MariaDB"});
  EXPECT_EQ(mariadb.status, 0) << mariadb.err;
  EXPECT_EQ(Lines(mariadb.out, "\n) engine = InnoDB character set utf8mb4 collate utf8mb4_nopad_bin;"), 19U);
  const Process other = test::Run(QMX_ADMIN, {"init", "--print-for", "Oracle"});
  EXPECT_EQ(other.status, 2);
  EXPECT_THAT(other.err, HasSubstr("SQLite, PostgreSQL and MariaDB, not in \"Oracle\""));
}

TEST_F(QmxAdminInit, NeedsBothArgumentsIfItIsNotToPrintForASystem) {
  const Process nothing = test::Run(QMX_ADMIN, {"init"});
  EXPECT_EQ(nothing.status, 2);
  EXPECT_THAT(nothing.err, HasSubstr("CONNECTION is required"));
  const Process one = test::Run(QMX_ADMIN, {"init", connectionText});
  EXPECT_EQ(one.status, 2);
  EXPECT_THAT(one.err, HasSubstr("DATABASE is required"));
}

TEST_F(QmxAdminInit, MakesTheNamedDatabaseInAFolder) {
  connectionText = "Provider=SQLite;Data Source=" + folder.Path().string();
  const Process run = Init("service");
  EXPECT_EQ(run.status, 0) << run.err;
  connectionText = "Provider=SQLite;Data Source=" + folder / "service.db";
  EXPECT_EQ(Count(kTables), 19);
}

TEST_F(QmxAdminInit, AFolderWithoutADatabaseNameIsExplained) {
  connectionText = "Provider=SQLite;Data Source=" + folder.Path().string();
  const Process run = Init();
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("the default database must be named"));
}

TEST_F(QmxAdminInit, AMissingFolderIsNamed) {
  connectionText = "Provider=SQLite;Data Source=" + folder / "missing/local.db";
  const Process run = Init();
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.out, IsEmpty());
  EXPECT_THAT(run.err, AllOf(StartsWith("error -2147467259"), HasSubstr("there is no folder " + folder / "missing")));
  EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
}

TEST_F(QmxAdminInit, AFileThatIsNoDatabaseIsNamedAndKept) {
  WriteFile(folder / "local.db", "Dear reader, this is a letter and no database, however long it goes on.");
  const Process run = Init();
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr(folder / "local.db"), HasSubstr("no SQLite database")));
  EXPECT_THAT(ReadFile(folder / "local.db"), StartsWith("Dear reader"));
}

TEST_F(QmxAdminInit, AConnectionTextOfAnotherFormIsRefusedWithTheRightFormAndWithoutItsPassword) {
  connectionText = "Server=x;PWD=geheim";
  const Process run = Init();
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr("Provider=SQLite;Data Source=FILE"), Not(HasSubstr("geheim"))));
}

TEST_F(QmxAdminInit, AnUnknownKeywordIsNamed) {
  connectionText += ";Chache=5";
  const Process run = Init();
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr("\"Chache\""), HasSubstr("Provider, Data Source and Mode")));
}

TEST_F(QmxAdminInit, NamesWhatAColumnHoldsAndWhatItShouldHold) {
  for (const auto& [type, holds] : std::vector<std::pair<std::string, std::string>>{{"boolean", "booleans"},
                                                                                    {"tinyint", "8-bit integers"},
                                                                                    {"smallint", "16-bit integers"},
                                                                                    {"integer", "32-bit integers"},
                                                                                    {"double", "numbers"},
                                                                                    {"datetime", "date-times"},
                                                                                    {"", "values of any type"}}) {
    Execute("drop table if exists tsmdm030");
    Execute("create table tsmdm030 (cstp varchar(10) not null primary key, dsca " + type +
            ", ract smallint, prod text)");
    EXPECT_THAT(Init().out, HasSubstr("\n  the column dsca holds " + holds + ", not texts\n"));
  }
}

TEST_F(QmxAdminInit, PrintsItsOutcomeAsJson) {
  Execute("create table tsmdm030 (cstp varchar(10), dsca varchar(10), ract text, prod text, note text)");
  const Process run = Init("", {"--json"});
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_THAT(run.out, StartsWith("[\n  {\"table\":\"tcccp001\",\"state\":\"created\",\"differences\":[]},\n"));
  EXPECT_THAT(run.out,
              HasSubstr("\n  {\"table\":\"tsmdm030\",\"state\":\"differs\",\"differences\":[\"the column note is "
                        "not expected\",\"it has no key, not the key cstp\"]},\n"));
  EXPECT_THAT(Init("", {"--json"}).out, HasSubstr("{\"table\":\"tcccp001\",\"state\":\"exists\",\"differences\":[]}"));
}

TEST_F(QmxAdminInit, PrintsOnlyTablesThatDifferIfItIsQuiet) {
  EXPECT_EQ(Init("", {"--quiet"}).out, "");
  Execute("alter table tsmdm030 add column note text");
  const Process run = Init("", {"--quiet"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, StartsWith("tsmdm030: differs\n  the column note is not expected\nTables that differ"));
}

}  // namespace
}  // namespace qmx::test
