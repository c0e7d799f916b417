#include "tools/qmxadmin/runs/run_history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/error.h"
#include "tests/support/process.h"
#include "tests/support/raised.h"
#include "tests/tools/qmxadmin/runs/run_log.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TheRunHistory : public testing::Test {
 protected:
  std::vector<std::string> Numbers() {
    std::vector<std::string> numbers;
    for (const qmx::Run& run : ReadRuns(log_.Folder())) numbers.push_back(run.number);
    return numbers;
  }
  RunLog log_;
};

TEST_F(TheRunHistory, JoinsTheStartAndTheEndOfARun) {
  log_.AddFailed("r1", "tcccp030=E1=E", "2026-11-20T14:00:00.500+01:00", "2026-11-20T14:00:02.000+01:00");
  const std::vector<qmx::Run> runs = ReadRuns(log_.Folder());
  ASSERT_EQ(runs.size(), 1U);
  const qmx::Run& run = runs[0];
  EXPECT_EQ(run.table, "tcccp030=E1=E");
  EXPECT_EQ(run.TableCode(), "tcccp030");
  EXPECT_EQ(run.started, RunMoment(std::chrono::milliseconds(1795179600500)));
  EXPECT_EQ(run.user, "qmx");
  EXPECT_EQ(run.process, getpid());
  ASSERT_TRUE(run.end.has_value());
  EXPECT_EQ(run.end->duration, std::chrono::milliseconds(1500));
  EXPECT_EQ(run.end->status, 1);
  EXPECT_EQ(run.Rows(), "7 added, 2 updated, 1 removed");
  EXPECT_EQ(run.Reason(), "There is no column \"ract\".");
  EXPECT_EQ(run.end->causes[0][1].details[1].second, "cstp='ADV'");
  EXPECT_EQ(run.end->causes[0][0].number, 3365);
}

TEST_F(TheRunHistory, IsSortedByTheInstantWhateverTheZone) {
  log_.AddStart("late", "t", "2026-11-20T14:00:00.000+01:00");
  log_.AddStart("early", "t", "2026-11-20T14:30:00.000+02:00");
  EXPECT_THAT(Numbers(), ElementsAre("early", "late"));
}

TEST_F(TheRunHistory, SkipsTornRecordsAndOtherLines) {
  log_.AddStart("r1", "t", "2026-11-20T14:00:00.000+01:00");
  log_.Append(R"({"v":1,"record":"start","run":"torn","tab)");
  log_.Append("[1, 2]");
  log_.Append(R"({"record":"start","run":"r9","time":"yesterday"})");
  log_.Append(R"({"record":"start","run":7,"time":"2026-11-20T14:00:00.000+01:00"})");
  log_.Append(R"({"record":"other","run":"r8","time":"2026-11-20T14:00:00.000+01:00"})");
  log_.AddStart("r2", "t", "2026-11-20T14:00:01.000+01:00", {{"new field", {1, 2}}});
  EXPECT_THAT(Numbers(), ElementsAre("r1", "r2"));
}

TEST_F(TheRunHistory, TakesMembersOfAnotherTypeForMissingOnes) {
  RunLog::Json end = RunLog::Complete("r1", "t", "2026-11-20T14:00:00.000+01:00");
  end["inserted"] = "many";
  end["causes"] = {1, {{"x"}}};
  end["duration_ms"] = nullptr;
  log_.Append(end.dump());
  EXPECT_EQ(ReadRuns(log_.Folder()).at(0).Rows(), "");
}

TEST_F(TheRunHistory, ReadsRotatedFilesCompressedOrNot) {
  log_.Append(RunLog::Start("r1", "t", "2026-11-18T14:00:00.000+01:00").dump(), "QMXRuns.jsonl.2");
  log_.Append(RunLog::Start("r2", "t", "2026-11-19T14:00:00.000+01:00").dump(), "QMXRuns.jsonl-20261119");
  ASSERT_EQ(test::Run("/bin/gzip", {log_.File("QMXRuns.jsonl.2")}).status, 0);
  log_.Append(RunLog::Start("r3", "t", "2026-11-20T14:00:00.000+01:00").dump());
  log_.Append(RunLog::Start("no", "t", "2026-11-20T14:00:00.000+01:00").dump(), "OtherRuns.jsonl");
  EXPECT_THAT(Numbers(), ElementsAre("r1", "r2", "r3"));
}

TEST_F(TheRunHistory, MatchesAnEndInARotatedFileWithItsStart) {
  log_.Append(RunLog::Start("r1", "t", "2026-11-18T14:00:00.000+01:00").dump());
  log_.Append(RunLog::Complete("r1", "t", "2026-11-18T14:00:01.500+01:00").dump(), "QMXRuns.jsonl.1");
  const std::vector<qmx::Run> runs = ReadRuns(log_.Folder());
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(StateOf(runs[0]), RunState::Complete);
}

TEST_F(TheRunHistory, ComputesAMissingStartFromTheEnd) {
  log_.Append(RunLog::Complete("r1", "t", "2026-11-18T14:00:01.500+01:00").dump());
  const std::vector<qmx::Run> runs = ReadRuns(log_.Folder());
  EXPECT_EQ(runs.at(0).started, RunMoment(std::chrono::milliseconds(1795006800000)));
  EXPECT_EQ(runs.at(0).host, "");
}

TEST_F(TheRunHistory, KnowsWhatBecameOfARunWithoutAnEnd) {
  const std::string time = "2026-11-20T14:00:00.000+01:00";
  log_.AddStart("r1", "t", time);
  log_.AddStart("r2", "t", time, {{"pid_start", 1}});  // the number is used again
  log_.AddStart("r3", "t", time, {{"pid", 0x7ffffff}});
  log_.AddStart("r4", "t", time, {{"boot", "another"}});
  log_.AddStart("r5", "t", time, {{"host", "elsewhere"}});
  std::vector<std::string> states;
  for (const qmx::Run& run : ReadRuns(log_.Folder()))
    states.push_back(StateText(run) + (IsFailure(run) ? ", bad" : ""));
  EXPECT_THAT(states, ElementsAre("running", "never ended, process gone, bad", "never ended, process gone, bad",
                                  "never ended, host rebooted, bad", "no end, process on elsewhere"));
}

TEST_F(TheRunHistory, FindsTheLastRunsOfATable) {
  log_.AddComplete("r1", "tsmdm030", "2026-11-20T14:00:00.000+01:00", "2026-11-20T14:00:01.500+01:00");
  log_.AddFailed("r2", "TSMDM030", "2026-11-20T15:00:00.000+01:00", "2026-11-20T15:00:01.500+01:00");
  log_.AddStart("r3", "tsmdm030", "2026-11-20T16:00:00.000+01:00");
  RunLog::Json refused = RunLog::Failed("r4", "tsmdm030", "2026-11-20T17:00:00.000+01:00");
  refused["outcome"] = "refused";
  log_.Append(refused.dump());
  const std::vector<qmx::Run> runs = ReadRuns(log_.Folder());
  const TableRuns table = RunsByTable(runs).at("tsmdm030");
  EXPECT_EQ(table.runs.size(), 4U);
  EXPECT_EQ(table.last->number, "r3");
  EXPECT_EQ(table.holder, table.last);
  EXPECT_EQ(table.lastEnded->number, "r2");
  EXPECT_EQ(table.lastSuccess->number, "r1");
  EXPECT_EQ(table.lastUpdate, "2026-11-20 14:00:00");
  EXPECT_FALSE(IsFailure(runs[3]));
}

TEST_F(TheRunHistory, IsEmptyInAFolderWithoutRecordsAndAnErrorWithoutAFolder) {
  EXPECT_THAT(Numbers(), IsEmpty());
  EXPECT_THAT(Raised([&] { ReadRuns(log_.File("none")); }).Description(),
              HasSubstr("none\" cannot be read: No such file"));
}

TEST_F(TheRunHistory, DoesNotWaitForAPipe) {
  ASSERT_EQ(mkfifo(log_.File().c_str(), 0600), 0);
  EXPECT_THAT(Raised([&] { Numbers(); }).Description(), HasSubstr("it is a named pipe, not a regular file"));
}

TEST(ADuration, IsShortAndHasItsUnit) {
  using std::chrono::milliseconds;
  EXPECT_EQ(DurationText(milliseconds(250)), "0.25 s");
  EXPECT_EQ(DurationText(milliseconds(12345)), "12.3 s");
  EXPECT_EQ(DurationText(milliseconds(245000)), "4:05 min");
  EXPECT_EQ(DurationText(milliseconds(7805000)), "2:10:05 h");
  EXPECT_EQ(AgeText(std::chrono::seconds(59)), "59 s");
  EXPECT_EQ(AgeText(std::chrono::seconds(7199)), "119 min");
  EXPECT_EQ(AgeText(std::chrono::seconds(7200)), "2 h");
  EXPECT_EQ(AgeText(std::chrono::seconds(200000)), "2 days");
}

}  // namespace
}  // namespace qmx::test
