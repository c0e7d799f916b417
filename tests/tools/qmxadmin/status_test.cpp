#include <nlohmann/json.hpp>

#include "tests/support/terminal_process.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"
#include "tools/qmxadmin/text_width.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class QmxAdminStatus : public AdminOnASystem {
 protected:
  void CopiedOnce() {
    for (const LocalTable& table : LocalTables()) {
      if (table.description.empty()) continue;
      Execute("insert into tstables (tablename, in_use, syme, lutm) values ('" + table.name +
              "', 0, 1, '2026-11-20 23:59:58')");
    }
    Execute("insert into tsmdm030 (cstp) values ('A')");
    Execute("insert into tsmdm030 (cstp) values ('B')");
    Execute("update tstables set in_use = 1, syme = 2, lutm = null where tablename = 'tssoc200'");
    Execute("update tstables set in_use = 2, syme = null where tablename = 'tssoc210'");
  }
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminStatus, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

// What does not depend on the system.
class QmxAdminStatusOnSqlite : public QmxAdminStatus {};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminStatusOnSqlite, testing::ValuesIn(OnlySqlite()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminStatus, ShowsEveryTableThatIsCopied) {
  CopiedOnce();
  const Process run = Admin({"status"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            "TABLE     DESCRIPTION               METHOD   IN USE  LAST UPDATE          ROWS\n"
            "tcccp001  Availability Types        full     no      2026-11-20 23:59:58     0\n"
            "tcccp030  Calendars                 full     no      2026-11-20 23:59:58     0\n"
            "tccom130  Addresses                 full     no      2026-11-20 23:59:58     0\n"
            "tscfg200  Objects                   full     no      2026-11-20 23:59:58     0\n"
            "tscfg220  Configurations            full     no      2026-11-20 23:59:58     0\n"
            "tsclm020  Response Times            full     no      2026-11-20 23:59:58     0\n"
            "tsclm024  Priority Time Scales      full     no      2026-11-20 23:59:58     0\n"
            "tsmdm030  Service Types             full     no      2026-11-20 23:59:58     2\n"
            "tsmdm100  Service Centers           full     no      2026-11-20 23:59:58     0\n"
            "tsmdm105  Service Areas             full     no      2026-11-20 23:59:58     0\n"
            "tsmdm130  Skills                    full     no      2026-11-20 23:59:58     0\n"
            "tsmdm135  Skills By Employee        full     no      2026-11-20 23:59:58     0\n"
            "tsmdm140  Service Employees         full     no      2026-11-20 23:59:58     0\n"
            "tssoc200  Service Orders            changed  yes     -                       0\n"
            "tssoc205  Service Order Engineers   full     no      2026-11-20 23:59:58     0\n"
            "tssoc210  Service Order Activities  full     no      2026-11-20 23:59:58     0\n"
            "tsspc200  Planned Activities        full     no      2026-11-20 23:59:58     0\n");
  EXPECT_THAT(run.err, IsEmpty());
}

TEST_P(QmxAdminStatusOnSqlite, PrintsTheSameAsJson) {
  CopiedOnce();
  const Process run = Admin({"status", "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  const auto tables = nlohmann::json::parse(run.out);
  ASSERT_EQ(tables.size(), 17U);
  EXPECT_EQ(tables[7], nlohmann::json::parse(R"({"table": "tsmdm030", "description": "Service Types", "method": "full",
      "in_progress": false, "last_update": "2026-11-20 23:59:58", "rows": 2, "control_record": true, "note": null,
      "needs_attention": false})"));
  EXPECT_EQ(tables[13], nlohmann::json::parse(R"({"table": "tssoc200", "description": "Service Orders",
      "method": "changed", "in_progress": true, "last_update": null, "rows": 0, "control_record": true,
      "note": null, "needs_attention": false})"));
}

TEST_P(QmxAdminStatus, ShowsWhichTablesAndControlRecordsAreMissing) {
  CopiedOnce();
  Execute("delete from tstables where tablename = 'tsmdm030'");
  Execute("delete from tstables where tablename = 'tsmdm100'");
  Execute("drop table tsmdm100");
  Execute("drop table tsmdm105");
  const Process run = Admin({"status"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(
      run.out,
      AllOf(HasSubstr("\ntsmdm030  Service Types             full     no      -                       2  no record\n"),
            HasSubstr("\ntsmdm100  Service Centers           full     no      -                       -  no record, no "
                      "table\n"),
            HasSubstr("\ntsmdm105  Service Areas             full     no      2026-11-20 23:59:58     -  no table\n"),
            HasSubstr("\ntsspc200  Planned Activities        full     no      2026-11-20 23:59:58     0\n")));
  EXPECT_THAT(run.err, IsEmpty());
}

TEST_P(QmxAdminStatusOnSqlite, ShowsControlRecordsOfOtherSpellings) {
  Execute("insert into tstables (tablename, in_use) values ('TSSOC200', 1)");
  Execute("insert into tstables (tablename) values ('xyz')");
  EXPECT_THAT(
      Admin({"status"}).out,
      AllOf(HasSubstr("\nTSSOC200  Service Orders            full    yes     -               -  not a table code"),
            HasSubstr("\nxyz       -                         full    no      -               -  not a table code")));
}

TEST_P(QmxAdminStatus, ShowsARecordInCapitalsAsTheTablesIfTheControlTableIgnoresCase) {
  Execute("drop table tstables");
  EXPECT_EQ(Admin({"init"}).status, 0);
  Execute("insert into tstables (tablename, in_use, syme) values ('TSSOC200', 1, 2)");
  const Process run = Admin({"status"});
  EXPECT_THAT(run.out, HasSubstr("\ntssoc200  Service Orders            changed  yes     -               0\n"));
  EXPECT_THAT(run.out, Not(HasSubstr("TSSOC200")));
  EXPECT_EQ(Admin({"release", "tssoc200", "--yes"}).status, 0);
  EXPECT_THAT(Column("select in_use from tstables"), testing::ElementsAre("0"));
}

TEST_P(QmxAdminStatusOnSqlite, SaysThatThereIsNoControlTable) {
  Execute("drop table tstables");
  const Process run = Admin({"status"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              HasSubstr("\ntsmdm030  Service Types             full    no      -               0  no record\n"));
  EXPECT_THAT(run.err, "There is no table tstables. \"qmxadmin init\" creates it.\n");
}

TEST_P(QmxAdminStatusOnSqlite, FitsTheTerminal) {
  CopiedOnce();
  Execute("delete from tstables where tablename = 'tsmdm030'");
  for (const int width : {40, 80, 120}) {
    TerminalProcess terminal(QMX_ADMIN, {"status"}, Environment(), width);
    const TerminalRun run = terminal.Wait();
    EXPECT_EQ(run.status, 0);
    const std::vector<std::string> lines = ScreenAfter(run.shown);
    ASSERT_EQ(lines.size(), 18U) << run.shown;
    for (const std::string& line : lines) EXPECT_LE(TextWidth(line), width) << line;
    if (width == 80) {
      EXPECT_EQ(lines[8], "tsmdm030  Service Types    full     no      -                       2  no record");
      EXPECT_EQ(lines[14], "tssoc200  Service Orders   changed  yes     -                       0");
      EXPECT_EQ(lines[16], "tssoc210  Service Order …  full     no      2026-11-20 23:59:58     0");
    }
  }
}

TEST_P(QmxAdminStatusOnSqlite, IsAsWideAsColumnsSays) {
  CopiedOnce();
  auto environment = Environment();
  environment["COLUMNS"] = "70";
  const std::vector<std::string> lines =
      ScreenAfter(TerminalProcess(QMX_ADMIN, {"status"}, environment, 120).Wait().shown);
  EXPECT_EQ(lines[16], "tssoc210  Service Order A…  full     no      2026-11-20 23:59:58     0");
  EXPECT_THAT(test::Run(QMX_ADMIN, {"status"}, environment).out,
              HasSubstr("\ntssoc210  Service Order Activities  full"));
}

TEST_P(QmxAdminStatusOnSqlite, ColoursNothingForThoseWhoWantNoColour) {
  EXPECT_THAT(TerminalProcess(QMX_ADMIN, {"status"}, Environment()).Wait().shown, StartsWith("\033[1mTABLE"));
  auto environment = Environment();
  environment["NO_COLOR"] = "1";
  EXPECT_THAT(TerminalProcess(QMX_ADMIN, {"status"}, environment).Wait().shown, Not(HasSubstr("\033")));
}

TEST_P(QmxAdminStatusOnSqlite, KeepsCodesWholeAtSixtyColumns) {
  CopiedOnce();
  Execute("drop table tsmdm100");
  const std::vector<std::string> lines =
      ScreenAfter(TerminalProcess(QMX_ADMIN, {"status"}, Environment(), 60).Wait().shown);
  ASSERT_EQ(lines.size(), 18U);
  EXPECT_EQ(lines[0], "TABLE     IN USE  LAST UPDATE          ROWS  NOTE");
  EXPECT_EQ(lines[8], "tsmdm030  no      2026-11-20 23:59:58     2");
  EXPECT_EQ(lines[9], "tsmdm100  no      2026-11-20 23:59:58     -  no table");
  EXPECT_EQ(lines[14], "tssoc200  yes     -                       0");
}

}  // namespace
}  // namespace qmx::test
