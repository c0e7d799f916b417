// qmxadmin status with the run records: what it adds, and when it ends with 1.
#include "tests/tools/qmxadmin/admin_on_a_system.h"
#include "tests/tools/qmxadmin/runs/run_log.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class QmxAdminStatusWithRuns : public AdminOnASystem {
 protected:
  Process Status(std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"status", "--logs", log_.Folder()});
    return Admin(more);
  }
  RunLog::Json Table(const std::string& code, const std::vector<std::string>& more = {"--json"}) {
    for (const auto& row : RunLog::Json::parse(Status(more).out)) {
      if (row["table"] == code) return row;
    }
    return {};
  }
  void Complete(const std::string& table) {
    log_.AddComplete("r1", table, "2026-11-20T14:00:00.000+01:00", "2026-11-20T14:00:01.500+01:00");
  }
  RunLog log_;
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminStatusWithRuns, testing::ValuesIn(OnlySqlite()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminStatusWithRuns, HasTheLastRunItsDurationAndItsRows) {
  Complete("tsmdm030");
  Execute("insert into tstables (tablename, in_use, lutm) values ('tsmdm030', 0, '2026-11-20 14:00:00')");
  EXPECT_EQ(Status().status, 0);
  const RunLog::Json row = Table("tsmdm030");
  EXPECT_EQ(row["last_run"], "complete");
  EXPECT_EQ(row["last_run_took"], "1.50 s");
  EXPECT_EQ(row["last_run_duration_ms"], 1500);
  EXPECT_EQ(row["last_run_rows"], "7 added, 2 updated, 1 removed");
  EXPECT_EQ(row["durations"], "█");
  EXPECT_EQ(row["needs_attention"], false);
  EXPECT_TRUE(row["held_by"].is_null());
  EXPECT_TRUE(Table("tsmdm100")["last_run"].is_null());
  EXPECT_THAT(Status().out, HasSubstr("LAST RUN"));
}

TEST_P(QmxAdminStatusWithRuns, NamesWhoHoldsATableAndSinceWhen) {
  log_.AddStart("r1", "tsmdm030", "2026-11-20T14:00:00.000+00:00");
  Execute("insert into tstables (tablename, in_use) values ('tsmdm030', 1)");
  EXPECT_EQ(Status().status, 0);
  const std::string holder = Table("tsmdm030")["held_by"];
  EXPECT_THAT(holder,
              HasSubstr("process " + std::to_string(getpid()) + " on " + HostName() + ", user qmx, since 2026-11-20 "));
}

TEST_P(QmxAdminStatusWithRuns, EndsWithOneIfTheRunOfAFlagIsGone) {
  Execute("insert into tstables (tablename, in_use) values ('tsmdm030', 1)");
  log_.AddStart("r1", "tsmdm030", "2026-11-20T14:00:00.000+01:00", {{"boot", "another"}});
  EXPECT_EQ(Status().status, 1);
  EXPECT_EQ(Table("tsmdm030")["needs_attention"], true);
  EXPECT_THAT(Status().out, HasSubstr("in use, but its run is gone: qmxadmin release tsmdm030"));
}

TEST_P(QmxAdminStatusWithRuns, EndsWithOneIfAFlagIsSetAndTheLastRunEnded) {
  Execute("insert into tstables (tablename, in_use) values ('tsmdm030', 1)");
  Complete("tsmdm030");
  EXPECT_EQ(Status().status, 1);
}

TEST_P(QmxAdminStatusWithRuns, DoesNotJudgeARunOnAnotherHost) {
  Execute("insert into tstables (tablename, in_use) values ('tsmdm030', 1)");
  log_.AddStart("r1", "tsmdm030", "2026-11-20T14:00:00.000+01:00", {{"host", "elsewhere"}});
  EXPECT_EQ(Status().status, 0);
}

TEST_P(QmxAdminStatusWithRuns, EndsWithOneIfTheLastRunFailed) {
  Execute("insert into tstables (tablename, in_use) values ('tsmdm030', 0)");
  log_.AddFailed("r1", "tsmdm030", "2026-11-20T14:00:00.000+01:00", "2026-11-20T14:00:01.500+01:00");
  EXPECT_EQ(Status().status, 1);
  EXPECT_EQ(Table("tsmdm030")["note"], "last run: failed, There is no column \"ract\".");
  EXPECT_EQ(Admin({"status"}).status, 0);  // nothing is known of runs
}

TEST_P(QmxAdminStatusWithRuns, EndsWithOneIfTheRecordOfACopiedTableIsMissing) {
  Complete("tsmdm030");
  EXPECT_EQ(Status().status, 1);
  EXPECT_EQ(Table("tsmdm030")["note"], "no record, no record, though it was copied");
}

TEST_P(QmxAdminStatusWithRuns, EndsWithOneIfALastUpdateIsTooOld) {
  Execute("insert into tstables (tablename, in_use, lutm) values ('tsmdm030', 0, '2020-11-20 14:00:00')");
  EXPECT_EQ(Admin({"status"}).status, 0);
  EXPECT_EQ(Admin({"status", "--max-age", "36500days"}).status, 0);
  const Process old = Admin({"status", "--max-age", "26h"});
  EXPECT_EQ(old.status, 1);
  EXPECT_THAT(old.out, testing::ContainsRegex("last update [0-9]+ days ago"));
  Execute("update tstables set lutm = null");
  EXPECT_THAT(Admin({"status", "--max-age", "26h"}).out, HasSubstr("no last update time"));
  EXPECT_EQ(Admin({"status", "--max-age", "soon"}).status, 2);
}

TEST_P(QmxAdminStatusWithRuns, EndsWithOneIfATableIsMissing) {
  Execute("drop table tsmdm030");
  const Process status = Admin({"status"});
  EXPECT_EQ(status.status, 1);
  EXPECT_THAT(status.out, HasSubstr("no table"));
}

}  // namespace
}  // namespace qmx::test
