// qmxadmin release of several tables, with the run records, and beside a running copy.

#include "tests/tools/qmxadmin/admin_on_a_system.h"
#include "tests/tools/qmxadmin/runs/run_log.h"
#include "tests/tools/qmxadmin/waiting_copy.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QmxAdminReleaseWithRuns : public AdminOnASystem {
 protected:
  QmxAdminReleaseWithRuns() {
    Execute("insert into tstables (tablename, in_use) values ('tssoc200', 1), ('tsmdm030', 1)");
  }
  std::vector<std::string> InUse() {
    return Column("select tablename from tstables where in_use = 1 order by tablename");
  }
  RunLog log_;
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminReleaseWithRuns, testing::ValuesIn(OnlySqlite()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminReleaseWithRuns, TakesSeveralTables) {
  const Process run = Admin({"release", "tssoc200", "tsmdm030", "tsmdm100", "--yes"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "tssoc200: released\ntsmdm030: released\ntsmdm100: not in progress, nothing to release\n");
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_P(QmxAdminReleaseWithRuns, ReleasesNoneIfOneIsUnknown) {
  EXPECT_EQ(Admin({"release", "tssoc200", "nothing", "--yes"}).status, 2);
  EXPECT_THAT(InUse(), ElementsAre("tsmdm030", "tssoc200"));
}

TEST_P(QmxAdminReleaseWithRuns, PrintsWhichProcessOnWhichHostHeldTheTable) {
  log_.AddStart("r1", "tssoc200", "2026-11-20T14:00:00.000+00:00", {{"host", "elsewhere"}, {"pid", 4711}});
  const Process run = Admin({"release", "tssoc200", "--yes", "--logs", log_.Folder()});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("tssoc200 (Service Orders) is in progress.\n"));
  EXPECT_THAT(run.err, HasSubstr("The run r1 by qmx on elsewhere, process 4711, started at 2026-11-20 "));
  EXPECT_THAT(run.err, HasSubstr(": no end, process on elsewhere.\n"));
}

TEST_P(QmxAdminReleaseWithRuns, RefusesWhileTheRunIsAliveUnlessItIsForced) {
  log_.AddStart("r1", "tssoc200", "2026-11-20T14:00:00.000+00:00");  // this process
  log_.AddStart("r2", "tsmdm030", "2026-11-20T14:00:00.000+00:00", {{"pid_start", 1}});
  const Process run = Admin({"release", "tssoc200", "tsmdm030", "--yes", "--logs", log_.Folder()});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "tssoc200: left in progress, a process on this machine copies it\n"
            "tsmdm030: released\n");
  EXPECT_THAT(run.err, HasSubstr("never ended, process gone.\n"));
  EXPECT_THAT(InUse(), ElementsAre("tssoc200"));
  EXPECT_EQ(Admin({"release", "tssoc200", "--yes", "--force", "--logs", log_.Folder()}).status, 0);
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_P(QmxAdminReleaseWithRuns, RefusesWhileAProcessCopiesTheTableIntoTheSameDatabase) {
  const auto release = [&](const std::string& connection) {
    const WaitingCopy copy(connection, "TSSOC200");
    return Admin({"release", "tssoc200", "--yes"});
  };
  const Process same = release(ConnectionText());
  EXPECT_EQ(same.status, 1);
  EXPECT_EQ(same.out, "tssoc200: left in progress, a process on this machine copies it\n");
  EXPECT_THAT(same.err, HasSubstr("Use --force to release it all the same."));
  const Process other = release("Provider=SQLite;Data Source=other.db");
  EXPECT_EQ(other.status, 0);
  EXPECT_THAT(other.err, testing::ContainsRegex("Process [0-9]+ on this machine has been copying"));
}

}  // namespace
}  // namespace qmx::test
