#include "platform/run_records/run_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "platform/error.h"
#include "platform/system/process_identity.h"
#include "tests/platform/run_records/kept_failures.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ARunRecord : public testing::Test {
 protected:
  ARunRecord() {
    start_.path = folder_ / "QMXRuns.jsonl";
    start_.version = "1.2.3";
    start_.table = "tsmdm030";
    start_.connection = "Provider=SQLite;Data Source=local.db";
  }

  std::string Written() { return ReadFile(start_.path); }
  std::vector<Json> Records() {
    std::vector<Json> records;
    std::istringstream lines(Written());
    for (std::string line; std::getline(lines, line);) {
      if (!line.empty()) records.push_back(Json::parse(line));
    }
    return records;
  }
  Json EndOf(int status, const RunFacts& facts = {}) {
    std::filesystem::remove(start_.path);
    RunRecord(start_, failures_).End(status, facts);
    return Records().at(1);
  }

  TempFolder folder_;
  RunStart start_;
  KeptFailures failures_;
};

TEST_F(ARunRecord, BeginsEachLineWithALineEndAndWritesTheStartAtOnce) {
  RunRecord record(start_, failures_);
  EXPECT_THAT(Written(), StartsWith("\n{\"v\":1,\"record\":\"start\",\"run\":\""));
  EXPECT_EQ(Records().size(), 1U);
  record.End(0, {});
  EXPECT_THAT(Written(), HasSubstr("}\n{\"v\":1,\"record\":\"end\",\"run\":\""));
  EXPECT_THAT(Written(), Not(testing::EndsWith("\n")));
  EXPECT_EQ(Records()[0]["run"], Records()[1]["run"]);
}

TEST_F(ARunRecord, HasTableProcessUserAndHost) {
  start_.request = 17;
  const RunRecord record(start_, failures_);
  const Json start = Records().at(0);
  EXPECT_EQ(start["table"], "tsmdm030");
  EXPECT_EQ(start["request"], 17);
  EXPECT_EQ(start["version"], "1.2.3");
  const ProcessIdentity process = ThisProcess();
  EXPECT_EQ(start["pid"], process.process);
  EXPECT_EQ(start["uid"], process.userNumber);
  EXPECT_TRUE(start["host"].is_string() && start["user"].is_string());
  EXPECT_EQ(start["boot"], process.boot.empty() ? Json() : Json(process.boot));
  EXPECT_TRUE(start["pid_start"].is_number());
}

TEST_F(ARunRecord, TellsTheModeFromTheStart) {
  for (const char* mode : {"whole", "rows"}) {
    start_.mode = mode;
    const RunRecord record(start_, failures_);
    EXPECT_EQ(Records().back()["mode"], mode);
  }
  start_.mode = "";
  const RunRecord record(start_, failures_);
  EXPECT_TRUE(Records().back()["mode"].is_null());
}

TEST_F(ARunRecord, HasNoRequestIfNoneWasMade) {
  const RunRecord record(start_, failures_);
  EXPECT_TRUE(Records().at(0)["request"].is_null());
}

TEST_F(ARunRecord, HasOutcomeMethodAndCounts) {
  RunFacts facts;
  facts.byChange = true;
  facts.counts = {7, 21, 2};
  facts.lastUpdateTime = DateTime::FromDate(2026, 11, 21);
  const Json end = EndOf(0, facts);
  EXPECT_EQ(end["outcome"], "complete");
  EXPECT_EQ(end["status"], 0);
  EXPECT_EQ(end["method"], "changed");
  EXPECT_EQ(end["inserted"], 7);
  EXPECT_EQ(end["updated"], 21);
  EXPECT_EQ(end["deleted"], 2);
  EXPECT_EQ(end["lutm"], "2026-11-21 00:00:00");
  EXPECT_EQ(end["retries"], 0);
  EXPECT_GT(end["peak_memory_kib"], 1000);
  EXPECT_GE(end["duration_ms"], 0);
  EXPECT_THAT(end["causes"], IsEmpty());
}

TEST_F(ARunRecord, HasNullForWhatIsNotKnown) {
  const Json end = EndOf(2);
  for (const char* field : {"method", "inserted", "updated", "deleted", "lutm"}) EXPECT_TRUE(end[field].is_null());
}

TEST_F(ARunRecord, NamesTheOutcomeOfEachStatus) {
  EXPECT_EQ(EndOf(0)["outcome"], "complete");
  EXPECT_EQ(EndOf(1)["outcome"], "failed");
  EXPECT_EQ(EndOf(2)["outcome"], "error");
  EXPECT_EQ(EndOf(3)["outcome"], "refused");
  EXPECT_EQ(EndOf(4)["outcome"], "nothing");
}

TEST_F(ARunRecord, HasNoMethodIfThereWasNothingToCopy) {
  RunFacts facts;
  facts.byChange = false;
  EXPECT_EQ(EndOf(1, facts)["method"], "full");
  EXPECT_TRUE(EndOf(4, facts)["method"].is_null());
}

TEST_F(ARunRecord, HasEveryFailureWithItsWholeChain) {
  {
    RunRecord record(start_, failures_);
    RecordedFailures recorded(failures_, &record);
    try {
      try {
        throw Error(3265, "ADODB.Recordset", "There is no column \"ract\".").With("column", "ract").With("key", "'A'");
      } catch (...) {
        throw Error(3365, "Copy Service Types", " Copy failed");
      }
    } catch (const Error& failure) {
      recorded.Report(failure);
    }
    recorded.Report(Error(70, "Text files", "Permission denied: tsmdm030.log"));
    record.End(1, {});
  }
  EXPECT_EQ(failures_.descriptions.size(), 2U);
  EXPECT_EQ(Records().at(1)["causes"].dump(),
            "[[{\"description\":\" Copy failed\",\"details\":{},\"number\":3365,\"source\":\"Copy Service Types\"},"
            "{\"description\":\"There is no column \\\"ract\\\".\",\"details\":{\"column\":\"ract\",\"key\":\"'A'\"},"
            "\"number\":3265,\"source\":\"ADODB.Recordset\"}],[{\"description\":\"Permission denied: tsmdm030.log\","
            "\"details\":{},\"number\":70,\"source\":\"Text files\"}]]");
}

TEST_F(ARunRecord, WritesOneEndOnly) {
  RunRecord record(start_, failures_);
  std::thread other([&] { record.End(2, {}); });
  other.join();
  record.End(0, {});
  EXPECT_EQ(Records().size(), 2U);
  EXPECT_EQ(Records()[1]["status"], 2);
}

TEST_F(ARunRecord, HidesTheSecretsOfTheConnectionTextInEveryText) {
  start_.connection = "Driver=none;Server=db1;UID=qmx;PWD={hush;one};Password=hush-two;PassPhrase=hush-three";
  start_.table = "hush-two";
  {
    RunRecord record(start_, failures_);
    for (const std::string secret : {"hush;one", "hush-two", "hush-three"})
      record.Add(Error(1, "of " + secret, secret + " and " + secret).With("detail", "'" + secret + "'"));
    record.End(1, {});
  }
  EXPECT_THAT(Written(), Not(HasSubstr("hush")));
  EXPECT_THAT(Written(), HasSubstr("\"source\":\"of ***\",\"description\":\"*** and ***\",\"details\":{\"detail\":"));
  EXPECT_EQ(Records().at(0)["table"], "***");
}

TEST_F(ARunRecord, HidesTheRestOfAPasswordThatHoldsASemicolonOrAComma) {
  start_.connection = "Driver=none;PWD=hu;hush1=hush2";
  start_.table = "hush;Server=db1";  // as it is where a comma of the password has moved the pieces
  RunRecord record(start_, failures_);
  record.Add(Error(1, "hush1", "hush2"));
  record.End(1, {});
  EXPECT_THAT(Written(), Not(HasSubstr("hush")));
}

TEST_F(ARunRecord, ShowsInvalidUtf8AsAReplacementCharacter) {
  start_.table = "tsm\xFF";
  const RunRecord record(start_, failures_);
  EXPECT_EQ(Records().at(0)["table"], "tsm\xEF\xBF\xBD");
}

TEST_F(ARunRecord, PrintsOneSentenceIfTheFileCannotBeWritten) {
  start_.path = folder_ / "none/QMXRuns.jsonl";
  RunRecord record(start_, failures_);
  record.End(0, {});
  EXPECT_THAT(failures_.descriptions, ElementsAre("error 75, Run record: The run is not recorded: \"" + start_.path +
                                                  "\" cannot be written: No such file or directory."));
}

}  // namespace
}  // namespace qmx::test
