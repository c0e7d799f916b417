#include <filesystem>
#include <thread>

#include "tests/support/temp_folder.h"
#include "tests/support/terminal_process.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class QmxAdminRelease : public AdminOnASystem {
 protected:
  QmxAdminRelease() {
    Execute(
        "insert into tstables (tablename, in_use, freq, reqd, syme, lutm) values "
        "('tssoc200', 1, 3, 4, 2, '2026-11-20 23:59:58'), ('tsmdm030', 1, 3, 4, 2, null)");
  }

  std::vector<std::string> InUse() {
    return Column("select tablename from tstables where in_use = 1 order by tablename");
  }
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminRelease, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

// What does not depend on the system.
class QmxAdminReleaseOnSqlite : public QmxAdminRelease {};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminReleaseOnSqlite, testing::ValuesIn(OnlySqlite()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminRelease, ReleasesTheTableAndNothingElse) {
  const Process run = Admin({"release", "tssoc200", "--yes"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "tssoc200: released\n");
  EXPECT_EQ(run.err,
            "tssoc200 (Service Orders) is in progress; tstables does not tell who copies it.\n"
            "Last update time: 2026-11-20 23:59:58.\n"
            "On this machine no qmxdatacopy copies it; other machines were not looked at.\n"
            "Once it is released the next copy can start. Two copies at a time leave a mixture of rows.\n");
  EXPECT_THAT(InUse(), ElementsAre("tsmdm030"));
  EXPECT_THAT(Column("select count(*) from tstables where tablename = 'tssoc200' and in_use = 0 and freq = 3 and "
                     "reqd = 4 and syme = 2 and lutm = '2026-11-20 23:59:58'"),
              ElementsAre("1"));
}

TEST_P(QmxAdminRelease, AsksOnATerminal) {
  for (const char* yes : {"y\n", "yes\n"}) {
    Execute("update tstables set in_use = 1");
    TerminalProcess terminal(QMX_ADMIN, {"release", "tssoc200"}, Environment());
    terminal.WaitFor("Release tssoc200? [y/N] ");
    EXPECT_THAT(InUse(), ElementsAre("tsmdm030", "tssoc200"));
    terminal.Type(yes);
    const TerminalRun run = terminal.Wait();
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(ScreenAfter(run.shown).back(), "tssoc200: released");
    EXPECT_THAT(InUse(), ElementsAre("tsmdm030"));
  }
}

TEST_P(QmxAdminReleaseOnSqlite, LeavesItAsItIsForEveryOtherAnswer) {
  for (const char* no : {"n\n", "\n", "yes, but later\n", "\x04"}) {  // the last one is the end of the input
    TerminalProcess terminal(QMX_ADMIN, {"release", "tssoc200"}, Environment());
    terminal.WaitFor("[y/N] ");
    terminal.Type(no);
    const TerminalRun run = terminal.Wait();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(ScreenAfter(run.shown).back(), EndsWith("tssoc200: left in progress"));
    EXPECT_THAT(InUse(), ElementsAre("tsmdm030", "tssoc200"));
  }
}

TEST_P(QmxAdminReleaseOnSqlite, RefusesWhereNobodyCanBeAsked) {
  const Process run = Admin({"release", "tssoc200"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.out, IsEmpty());
  EXPECT_THAT(run.err, AllOf(StartsWith("tssoc200 (Service Orders) is in progress"), HasSubstr("no terminal"),
                             HasSubstr("--yes")));
  EXPECT_THAT(InUse(), ElementsAre("tsmdm030", "tssoc200"));
}

TEST_P(QmxAdminReleaseOnSqlite, HasNothingToDoForATableThatIsFree) {
  Execute("update tstables set in_use = 2 where tablename = 'tsmdm030'");
  for (const char* free : {"tsmdm030", "tsmdm100"}) {  // the second has no record
    const Process run = Admin({"release", free});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, std::string(free) + ": not in progress, nothing to release\n");
  }
  EXPECT_THAT(Column("select in_use from tstables order by tablename"), ElementsAre("2", "1"));
}

TEST_P(QmxAdminReleaseOnSqlite, ReleasesARecordOfAnotherSpelling) {
  Execute("insert into tstables (tablename, in_use) values ('TSSOC200', 1)");
  EXPECT_EQ(Admin({"release", "TSSOC200", "--yes"}).out, "TSSOC200: released\n");
  EXPECT_THAT(InUse(), ElementsAre("tsmdm030", "tssoc200"));
}

TEST_P(QmxAdminReleaseOnSqlite, DoesNotKnowAnyOtherTable) {
  const Process run = Admin({"release", "TSSOC210", "--yes"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr("no table \"TSSOC210\""), HasSubstr("tssoc205, tssoc210, tsspc200.")));
}

TEST_P(QmxAdminReleaseOnSqlite, NamesTheProcessThatCopiesTheTable) {
  // A program of that name and with such a command line, which waits.
  const TempFolder folder;
  std::filesystem::create_symlink("/usr/bin/tail", folder / "qmxdatacopy");
  const auto copying = [&](const std::string& table) {
    return std::vector<std::string>{"-f", "/dev/null", "--", ConnectionText() + ", , " + table + " , log, a, b"};
  };
  const RunningProcess copy(folder / "qmxdatacopy", copying("TSSOC200"));
  const RunningProcess other(folder / "qmxdatacopy", copying("tsmdm030"));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));  // until both have become that program
  const Process run = Admin({"release", "tssoc200", "--yes"});
  EXPECT_THAT(run.err, AllOf(testing::ContainsRegex("On this machine process [0-9]+ has been copying a table of that "
                                                    "code since 20[0-9-]+ [0-9:]+\\.\n"),
                             Not(HasSubstr("other machines")), Not(HasSubstr("rose"))));
  EXPECT_EQ(run.err.find("On this machine process"), run.err.rfind("On this machine process"));
}

}  // namespace
}  // namespace qmx::test
