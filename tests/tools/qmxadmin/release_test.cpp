#include "tests/support/terminal_process.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"
#include "tests/tools/qmxadmin/waiting_copy.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
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
  // Another test may be copying a table of this code meanwhile.
  EXPECT_THAT(run.err,
              MatchesRegex("tssoc200 \\(Service Orders\\) is in progress\\. Its control record does not say which "
                           "process copies it\\.\n"
                           "Last update time: 2026-11-20 23:59:58\\.\n"
                           "(No qmxdatacopy on this machine copies it\\. Other machines were not checked\\.\n"
                           "|(Process [0-9]+ on this machine has been copying a table of this code since [^\n]+\n)+)"
                           "After the release the next copy can start\\. Two copies of a table at the same time mix "
                           "their rows\\.\n"));
  EXPECT_THAT(InUse(), ElementsAre("tsmdm030"));
  EXPECT_THAT(Column("select count(*) from tstables where tablename = 'tssoc200' and in_use = 0 and freq = 3 and "
                     "reqd = 4 and syme = 2 and lutm = '2026-11-20 23:59:58'"),
              ElementsAre("1"));
}

TEST_P(QmxAdminRelease, AsksOnATerminal) {
  // Ctrl+V passes a CR on, which ends the lines of a console of Windows.
  for (const char* yes : {"y\n", "yes\n", "y\x16\r\n", " Y \t\n"}) {
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

TEST_P(QmxAdminReleaseOnSqlite, RefusesIfNobodyCanBeAsked) {
  const Process run = Admin({"release", "tssoc200"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.out, IsEmpty());
  EXPECT_THAT(run.err, AllOf(StartsWith("tssoc200 (Service Orders) is in progress"), HasSubstr("not a terminal"),
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
  const WaitingCopy copy("Provider=SQLite;Data Source=other.db;PWD=rose", "TSSOC200");
  const WaitingCopy other("Provider=SQLite;Data Source=other.db;PWD=rose", "tsmdm030");
  const Process run = Admin({"release", "tssoc200", "--yes"});
  EXPECT_THAT(run.err, ContainsRegex("Process " + copy.Number() +
                                     " on this machine has been copying a table of this code since "
                                     "20[0-9-]+ [0-9:]+\\.\n"));
  EXPECT_THAT(run.err, AllOf(Not(HasSubstr("Other machines")), Not(HasSubstr("rose")),
                             Not(HasSubstr("Process " + other.Number() + " "))));
}

TEST_P(QmxAdminReleaseOnSqlite, PrintsItsOutcomeAsJson) {
  EXPECT_EQ(Admin({"release", "tssoc200", "--yes", "--json"}).out,
            "[\n  {\"table\":\"tssoc200\",\"was_in_progress\":true,\"released\":true}\n]\n");
  EXPECT_EQ(Admin({"release", "tssoc200", "--yes", "--json"}).out,
            "[\n  {\"table\":\"tssoc200\",\"was_in_progress\":false,\"released\":false}\n]\n");
}

TEST_P(QmxAdminReleaseOnSqlite, PrintsNothingIfItIsQuietAndNeedNotAsk) {
  const Process run = Admin({"release", "tssoc200", "--yes", "--quiet"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out + run.err, "");
  EXPECT_THAT(InUse(), ElementsAre("tsmdm030"));
  EXPECT_THAT(Admin({"release", "tsmdm030", "--quiet"}).err, StartsWith("tsmdm030 (Service Types) is in progress."));
}

}  // namespace
}  // namespace qmx::test
