// qmxadmin history, metrics and report as processes over records in a folder.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process.h"
#include "tests/tools/qmxadmin/runs/run_log.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

class QmxAdminHistory : public testing::Test {
 protected:
  QmxAdminHistory() {
    log_.AddComplete("aaaaaaaa-1", "tsmdm030", "2026-11-20T14:00:00.000+01:00", "2026-11-20T14:00:01.500+01:00");
    log_.AddFailed("bbbbbbbb-1", "tssoc200", "2026-11-20T15:00:00.000+01:00", "2026-11-20T15:00:01.500+01:00");
    log_.AddStart("cccccccc-1", "tssoc200", "2026-11-20T16:00:00.000+01:00", {{"boot", "another"}});
    log_.AddStart("bbbbbbbb-2", "tcccp030=E1=E", "2026-11-20T17:00:00.000+01:00");
  }

  Process Admin(const std::vector<std::string>& arguments) {
    return test::Run(QMX_ADMIN, arguments, {{"TZ", "CET-1"}, {"COLUMNS", ""}});
  }
  Process History(std::vector<std::string> more) {
    more.insert(more.begin(), {"history", "--logs", log_.Folder()});
    return Admin(more);
  }
  std::vector<std::string> Numbers(std::vector<std::string> more) {
    more.emplace_back("--json");
    std::vector<std::string> numbers;
    for (const auto& run : RunLog::Json::parse(History(more).out)) numbers.push_back(run["run"]);
    return numbers;
  }

  RunLog log_;
};

TEST_F(QmxAdminHistory, ShowsALineARunTheNewestLast) {
  const Process shown = History({});
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(shown.err, "");
  std::istringstream lines(shown.out);
  std::vector<std::string> rows;
  for (std::string line; std::getline(lines, line);) rows.push_back(line);
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_THAT(rows[0], StartsWith("STARTED"));
  EXPECT_THAT(rows[1],
              MatchesRegex("2026-11-20 14:00:00  tsmdm030 +complete +0  full +7 +2 +1  1.50 s  qmx +aaaaaaaa.*"));
  EXPECT_THAT(rows[2], AllOf(HasSubstr("failed"), HasSubstr("There is no column \"ract\".")));
  EXPECT_THAT(rows[3], HasSubstr("never ended, host rebooted"));
  EXPECT_THAT(rows[4], AllOf(HasSubstr("tcccp030=E1=E"), HasSubstr("running")));
}

TEST_F(QmxAdminHistory, ShowsTheRunsOfTheTablesThatAreNamed) {
  EXPECT_THAT(Numbers({"tssoc200", "tsmdm030"}), ElementsAre("aaaaaaaa-1", "bbbbbbbb-1", "cccccccc-1"));
  EXPECT_THAT(Numbers({"TCCCP030"}), ElementsAre("bbbbbbbb-2"));
  EXPECT_THAT(Numbers({"tcccp030=E1=E"}), ElementsAre("bbbbbbbb-2"));
  EXPECT_THAT(Numbers({"tcccp030=E2=E"}), IsEmpty());
}

TEST_F(QmxAdminHistory, ShowsTheLastRunsTheFailedOnesAndThoseSinceATime) {
  EXPECT_THAT(Numbers({"--last", "2"}), ElementsAre("cccccccc-1", "bbbbbbbb-2"));
  EXPECT_THAT(Numbers({"--failed"}), ElementsAre("bbbbbbbb-1", "cccccccc-1"));
  EXPECT_THAT(Numbers({"--since", "2026-11-20 16:00"}), ElementsAre("cccccccc-1", "bbbbbbbb-2"));
  EXPECT_THAT(History({"--since", "soon"}).err, HasSubstr("\"soon\" is not a time."));
}

TEST_F(QmxAdminHistory, GivesJson) {
  const auto runs = RunLog::Json::parse(History({"--json", "--last", "3"}).out);
  EXPECT_EQ(runs[0]["result"], "failed");
  EXPECT_EQ(runs[0]["status"], 1);
  EXPECT_EQ(runs[0]["duration_ms"], 1500);
  EXPECT_EQ(runs[0]["inserted"], 7);
  EXPECT_EQ(runs[0]["reason"], "There is no column \"ract\".");
  EXPECT_EQ(runs[2]["pid"], getpid());
  EXPECT_TRUE(runs[2]["status"].is_null());
}

TEST_F(QmxAdminHistory, ShowsTheWholeChainOfOneRun) {
  const Process shown = History({"--run", "bbbbbbbb-1"});
  EXPECT_EQ(shown.status, 0);
  EXPECT_THAT(shown.out,
              HasSubstr("run       bbbbbbbb-1\ntable     tssoc200\nstarted   2026-11-20 15:00:00\nprocess   "));
  EXPECT_THAT(shown.out, HasSubstr("result    failed\nstatus    1\nended     2026-11-20 15:00:01, after 1.50 s\n"
                                   "method    full\nrows      7 added, 2 updated, 1 removed\n"
                                   "error 3365, Copy Service Types:  Copy <failed>\n"
                                   "  because of error 3265, ADODB.Recordset: There is no column \"ract\".\n"
                                   "      column: ract\n      key: cstp='ADV'\n"));
}

TEST_F(QmxAdminHistory, GivesTheWholeChainOfCausesAsJson) {
  const auto chains = RunLog::Json::parse(R"([[
      {"number": 3365, "source": "Copy Service Types", "description": " Copy <failed>", "details": {}},
      {"number": 3265, "source": "ADODB.Recordset", "description": "There is no column \"ract\".",
       "details": {"column": "ract", "key": "cstp='ADV'"}}]])");
  EXPECT_EQ(RunLog::Json::parse(History({"--run", "bbbbbbbb-1", "--json"}).out)[0]["causes"], chains);
  const auto runs = RunLog::Json::parse(History({"--json"}).out);
  EXPECT_EQ(runs[0]["causes"], RunLog::Json::array());  // complete
  EXPECT_EQ(runs[1]["causes"], chains);
  EXPECT_EQ(runs[2]["causes"], RunLog::Json::array());  // never ended
}

TEST_F(QmxAdminHistory, RefusesABeginningThatSeveralRunNumbersShare) {
  const Process several = History({"--run", "bbbb"});
  EXPECT_EQ(several.out, "");
  EXPECT_THAT(several.err, HasSubstr("2 runs begin with bbbb: give more of the number."));
  EXPECT_THAT(History({"--run", "cccc"}).out, StartsWith("run       cccccccc-1\n"));
  const Process none = History({"--run", "dddd"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err, "There is no run dddd in the records.\n");
}

TEST_F(QmxAdminHistory, LetsNoControlCharacterOfACauseReachTheTerminal) {
  RunLog::Json end = RunLog::Failed("eeeeeeee-1", "tsmdm030", "2026-11-20T18:00:00.000+01:00");
  end["causes"][0][0]["description"] = "bell\x07 and \x1b[2J";
  log_.Append(end.dump());
  EXPECT_THAT(History({"--run", "eeee"}).out, AllOf(HasSubstr("bell  and  [2J"), Not(HasSubstr("\x1b"))));
}

TEST_F(QmxAdminHistory, IsEmptyWithoutRecordsAndFailsWithoutAFolder) {
  const RunLog empty;
  EXPECT_EQ(Admin({"history", "--logs", empty.Folder(), "--json"}).out, "[\n]\n");
  EXPECT_EQ(Admin({"history", "--logs", empty.File("none")}).status, 2);
  EXPECT_EQ(Admin({"history"}).status, 2);
}

TEST_F(QmxAdminHistory, OfMetricsGoesToAFileThatIsReplaced) {
  EXPECT_EQ(Admin({"metrics", "--logs", log_.Folder(), "--output", log_.File("qmx.prom")}).status, 0);
  EXPECT_THAT(ReadFile(log_.File("qmx.prom")), HasSubstr("qmx_copy_abandoned{table=\"tssoc200\"} 1\n"));
  EXPECT_EQ(Admin({"metrics", "--logs", log_.Folder()}).out.substr(0, 6), "# HELP");
  EXPECT_EQ(Admin({"metrics", "--logs", log_.Folder(), "--output", "/none/file"}).status, 2);
}

TEST_F(QmxAdminHistory, OfAReportGoesToAFile) {
  EXPECT_EQ(Admin({"report", "--logs", log_.Folder(), "--output", log_.File("report.html")}).status, 0);
  EXPECT_THAT(ReadFile(log_.File("report.html")), AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr("Service Orders")));
}

}  // namespace
}  // namespace qmx::test
