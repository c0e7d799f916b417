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
using testing::SizeIs;

class QmxAdminExpand : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(test::Run(QMX_ADMIN, {"init", connectionText, ""}).status, 0);
    Execute({"insert into tsmdm140 (emno, ccal) values ('1', 'DAY'), ('2', 'DAY'), ('3', 'NEW'), ('4', '')",
             "insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values "
             "('DAY', 'WRK', '2026-11-23', 800, '2026-11-27', 1200), "
             "('DAY', 'WRK', '2026-11-23', 1230, '2026-11-26', 1630)",
             "insert into tscalender (ccal, sttm, entm) values ('DAY', '1999-01-01', '1999-01-02'), "
             "('OLD', '1999-01-01', '1999-01-02')"});
  }

  Process Expand(const std::string& text, const std::string& database = "") {
    return test::Run(QMX_ADMIN, {"expand", text, database});
  }

  void Execute(const std::vector<std::string>& statements) {
    Connection connection({&driver}, nullptr);
    connection.Open(connectionText, "", "");
    for (const std::string& statement : statements) connection.Execute(statement);
    connection.Close();
  }

  // Makes the table refuse the last day's interval of the calendar DAY.
  void RefuseFriday() {
    Execute({"drop table tscalender",
             "create table tscalender (ccal text, sttm text, entm text, check (ccal <> 'DAY' or sttm < '2026-11-27'))",
             "insert into tscalender values ('DAY', '1999-01-01', '1999-01-02')"});
  }

  // The first column of the rows, as texts.
  std::vector<std::string> Column(const std::string& query) {
    Connection connection({&driver}, nullptr);
    connection.Open(connectionText, "", "");
    Recordset records(nullptr);
    records.Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    std::vector<std::string> values;
    for (; !records.Eof(); records.MoveNext()) values.push_back(records.Fields(std::size_t{0}).Value().ToText());
    return values;
  }
  int Count(const std::string& query) { return std::stoi(Column(query).at(0)); }

  TempFolder folder;
  SqliteDriver driver;
  std::string connectionText = "Provider=SQLite;Data Source=" + folder / "local.db";
};

TEST_F(QmxAdminExpand, ExpandsTheCalendarsInUseAndPrintsTheNumberOfIntervals) {
  const Process run = Expand(connectionText);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "DAY: 9 intervals\n"
            "NEW: 0 intervals\n"
            "OLD: 1 intervals, unchanged: no service employee has this calendar\n");
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_EQ(Count("select count(*) from tscalender where ccal = 'DAY' and sttm >= '2026-11-23 08:00:00' and "
                  "entm <= '2026-11-27 12:00:00'"),
            9);
  EXPECT_EQ(Count("select count(*) from tscalender where ccal = 'DAY' and sttm < '2026-11-23'"), 0);
}

TEST_F(QmxAdminExpand, GivesTheSameTwice) {
  const auto intervals = [&] {
    return Column("select ccal || ' ' || sttm || ' ' || entm from tscalender order by ccal, sttm");
  };
  const Process first = Expand(connectionText);
  EXPECT_EQ(first.status, 0) << first.err;
  EXPECT_THAT(first.out, HasSubstr("DAY: 9 intervals\n"));
  const std::vector<std::string> rows = intervals();
  EXPECT_THAT(rows, SizeIs(10));
  EXPECT_EQ(rows.front(), "DAY 2026-11-23 08:00:00 2026-11-23 12:00:00");
  const Process second = Expand(connectionText);
  EXPECT_EQ(second.status, 0) << second.err;
  EXPECT_EQ(second.out, first.out);
  EXPECT_EQ(intervals(), rows);
}

TEST_F(QmxAdminExpand, SelectsTheDatabaseInAFolder) {
  const Process run = Expand("Provider=SQLite;Data Source=" + folder.Path().string(), "local");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("DAY: 9 intervals\n"));
}

TEST_F(QmxAdminExpand, SaysSoWhenNobodyHasACalendar) {
  Execute({"delete from tsmdm140"});
  EXPECT_EQ(Expand(connectionText).out,
            "No service employee has a calendar, so nothing was expanded.\n"
            "DAY: 1 intervals, unchanged: no service employee has this calendar\n"
            "OLD: 1 intervals, unchanged: no service employee has this calendar\n");
}

TEST_F(QmxAdminExpand, FailsIfATableIsMissing) {
  Execute({"drop table tsmdm140"});
  const Process run = Expand(connectionText);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr("-2147217865"), HasSubstr("tsmdm140")));
  EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(QmxAdminExpand, FailsWithWhatEndsTheExpansion) {
  Execute({"update tcccp030 set entm = 32768"});
  const Process run = Expand(connectionText);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr("error 6"), HasSubstr("32768")));
}

TEST_F(QmxAdminExpand, NamesTheCalendarAndTheRecordThatHasNoEnd) {
  Execute({"update tcccp030 set endt = null where sttm = 1230"});
  const Process run = Expand(connectionText);
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("error 94, Values: Invalid use of null where a date-time is wanted. [calendar: DAY; "
                                 "record: stdt=2026-11-23, sttm=1230, ract='WRK'; what to do: copy this calendar again "
                                 "as tcccp030=DAY=C, then expand again]"));
}

TEST_F(QmxAdminExpand, FailsForADatabaseThatIsNotThereAndMakesNone) {
  const Process run = Expand("Provider=SQLite;Data Source=" + folder / "none.db");
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("none.db"));
  EXPECT_FALSE(std::filesystem::exists(folder / "none.db"));
}

TEST_F(QmxAdminExpand, NeedsBothArguments) { EXPECT_EQ(test::Run(QMX_ADMIN, {"expand", connectionText}).status, 2); }

TEST_F(QmxAdminExpand, PrintsTheSameAsJson) {
  const Process run = test::Run(QMX_ADMIN, {"expand", connectionText, "", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "[\n"
            "  {\"calendar\":\"DAY\",\"intervals\":9,\"expanded\":true},\n"
            "  {\"calendar\":\"NEW\",\"intervals\":0,\"expanded\":true},\n"
            "  {\"calendar\":\"OLD\",\"intervals\":1,\"expanded\":false}\n"
            "]\n");
}

TEST_F(QmxAdminExpand, InWholeModeTellsACalendarThatFailedAndKeepsItsIntervals) {
  Execute(
      {"insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values "
       "('NEW', 'WRK', '2026-11-23', 800, '2026-11-23', 1200)"});
  RefuseFriday();
  const Process run = test::Run(QMX_ADMIN, {"expand", connectionText, "", "--whole"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, AllOf(HasSubstr("DAY: not expanded, its intervals are as before.\n"),
                             HasSubstr("CHECK constraint failed")));
  EXPECT_THAT(run.out, AllOf(HasSubstr("DAY: 1 intervals\n"), HasSubstr("NEW: 1 intervals\n")));
  EXPECT_EQ(Count("select count(*) from tscalender where ccal = 'DAY' and sttm < '2000-01-01'"), 1);
}

TEST_F(QmxAdminExpand, IsInWholeModeAsTheEnvironmentSays) {
  RefuseFriday();
  EXPECT_EQ(test::Run(QMX_ADMIN, {"expand", connectionText, ""}, {{"QMX_COPY", "whole"}}).status, 1);
  EXPECT_EQ(Count("select count(*) from tscalender where ccal = 'DAY'"), 1);
  EXPECT_EQ(test::Run(QMX_ADMIN, {"expand", connectionText, ""}, {{"QMX_COPY", ""}}).status, 0);
  EXPECT_EQ(Count("select count(*) from tscalender where ccal = 'DAY'"), 8);
  const Process other = test::Run(QMX_ADMIN, {"expand", connectionText, ""}, {{"QMX_COPY", "half"}});
  EXPECT_EQ(other.status, 2);
  EXPECT_THAT(other.err, HasSubstr("QMX_COPY is \"half\". It may be \"whole\" or empty."));
}

TEST_F(QmxAdminExpand, PrintsNothingIfItIsQuietAndAllIsWell) {
  const Process run = test::Run(QMX_ADMIN, {"expand", connectionText, "", "--quiet"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out + run.err, "");
  EXPECT_EQ(Count("select count(*) from tscalender where ccal = 'DAY'"), 9);
}

}  // namespace
}  // namespace qmx::test
