#include "tools/qmxadmin/runs/run_metrics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/missing.h"
#include "tests/support/process.h"
#include "tests/tools/qmxadmin/runs/run_log.h"
#include "tools/qmxadmin/runs/run_history.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class TheMetrics : public testing::Test {
 protected:
  TheMetrics() { tzset(); }

  std::string Text() { return RunMetrics(ReadRuns(log_.Folder()), RunMoment(std::chrono::seconds(1795183200))); }

  EnvironmentVariable zone_{"TZ", "CET-1"};
  RunLog log_;
};

TEST_F(TheMetrics, HaveTheLastRunOfEachTable) {
  log_.AddComplete("r1", "tsmdm030", "2026-11-20T14:00:00.000+01:00", "2026-11-20T14:00:01.500+01:00");
  log_.AddFailed("r2", "tssoc200", "2026-11-20T14:30:00.000+01:00", "2026-11-20T14:30:01.500+01:00");
  const std::string text = Text();
  for (const char* line :
       {"# TYPE qmx_copy_last_success_timestamp_seconds gauge\n",
        "qmx_copy_last_success_timestamp_seconds{table=\"tsmdm030\"} 1795179601.5\n",
        "qmx_copy_last_run_timestamp_seconds{table=\"tssoc200\"} 1795181400\n",
        "qmx_copy_last_run_success{table=\"tsmdm030\"} 1\n", "qmx_copy_last_run_success{table=\"tssoc200\"} 0\n",
        "qmx_copy_last_run_exit_status{table=\"tssoc200\"} 1\n",
        "qmx_copy_last_run_duration_seconds{table=\"tsmdm030\"} 1.5\n",
        "qmx_copy_last_run_rows{table=\"tsmdm030\",operation=\"inserted\"} 7\n",
        "qmx_copy_last_run_rows{table=\"tsmdm030\",operation=\"updated\"} 2\n",
        "qmx_copy_last_run_rows{table=\"tsmdm030\",operation=\"deleted\"} 1\n",
        "qmx_copy_in_progress_seconds{table=\"tsmdm030\"} 0\n", "qmx_copy_abandoned{table=\"tsmdm030\"} 0\n",
        "qmx_copy_lutm_age_seconds{table=\"tsmdm030\"} 3600\n"})
    EXPECT_THAT(text, HasSubstr(line));
  EXPECT_THAT(text, Not(HasSubstr("qmx_copy_last_success_timestamp_seconds{table=\"tssoc200\"}")));
}

TEST_F(TheMetrics, DistinguishARunInProgressFromOneThatIsGone) {
  log_.AddStart("r1", "tsmdm030", "2026-11-20T14:50:00.000+01:00");
  log_.AddStart("r2", "tssoc200", "2026-11-20T14:50:00.000+01:00", {{"pid_start", 1}});
  EXPECT_THAT(Text(), HasSubstr("qmx_copy_in_progress_seconds{table=\"tsmdm030\"} 600\n"));
  EXPECT_THAT(Text(), HasSubstr("qmx_copy_abandoned{table=\"tsmdm030\"} 0\n"));
  EXPECT_THAT(Text(), HasSubstr("qmx_copy_in_progress_seconds{table=\"tssoc200\"} 0\n"));
  EXPECT_THAT(Text(), HasSubstr("qmx_copy_abandoned{table=\"tssoc200\"} 1\n"));
  EXPECT_THAT(Text(), HasSubstr("qmx_copy_last_run_success{table=\"tssoc200\"} 0\n"));
}

TEST_F(TheMetrics, AreEmptyWithoutRuns) { EXPECT_THAT(Text(), IsEmpty()); }

TEST_F(TheMetrics, PassPrometheussOwnCheck) {
  if (!std::filesystem::exists("/usr/bin/promtool")) return Missing("There is no promtool (prometheus).");
  log_.AddComplete("r1", "tsmdm030", "2026-11-20T14:00:00.000+01:00", "2026-11-20T14:00:01.500+01:00");
  log_.AddStart("r2", "a \"b\" \\c", "2026-11-20T14:50:00.000+01:00");
  WriteFile(log_.File("metrics"), Text());
  const Process check = test::Run("/bin/sh", {"-c", "promtool check metrics < \"$0\"", log_.File("metrics")});
  EXPECT_EQ(check.status, 0) << check.err;
  EXPECT_EQ(check.out + check.err, "");
}

}  // namespace
}  // namespace qmx::test
