// The record of each run in QMXRuns.jsonl, as the processes leave it at every kind of end.
#include <sys/stat.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/startup/ending_component.h"

namespace qmx::test {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

class TheRunRecord : public EndingComponent {
 protected:
  // With the sandbox's own components unless a test ends the run at a call.
  TheRunRecord() { environment_["QMX_COMPONENTS"] = SANDBOX_COMPONENTS; }

  void EndAt(const std::string& member, int call, const std::string& what) {
    environment_["QMX_COMPONENTS"] = ENDING_COMPONENTS;
    At(member, call, what);
  }

  std::vector<Json> Records() {
    std::vector<Json> records;
    std::istringstream lines(Log("QMXRuns.jsonl"));
    for (std::string line; std::getline(lines, line);) {
      if (!line.empty()) records.push_back(Json::parse(line));
    }
    return records;
  }
  Json End() {
    const std::vector<Json> records = Records();
    EXPECT_EQ(records.size(), 2U);
    EXPECT_EQ(records.at(0)["run"], records.at(1)["run"]);
    return records.at(1);
  }
  static std::string InnermostCause(const Json& end) { return end["causes"].at(0).back()["description"]; }
};

TEST_F(TheRunRecord, HasHostUserTableOutcomeAndCounts) {
  pieces_.rest = ",17";
  EXPECT_EQ(Copy().status, 0);
  const Json start = Records().at(0);
  EXPECT_EQ(start["record"], "start");
  EXPECT_EQ(start["table"], "tsmdm030");
  EXPECT_EQ(start["request"], 17);
  EXPECT_THAT(start["version"].get<std::string>(), MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
  EXPECT_THAT(start["time"].get<std::string>(),
              MatchesRegex("20[0-9]{2}-[0-9]{2}-[0-9]{2}T[0-9:.]{12}[+-][0-9]{2}:[0-9]{2}"));
  const Json end = End();
  EXPECT_EQ(end["record"], "end");
  EXPECT_EQ(end["outcome"], "complete");
  EXPECT_EQ(end["status"], 0);
  EXPECT_EQ(end["method"], "full");
  EXPECT_EQ(end["inserted"], 3);
  EXPECT_EQ(end["updated"], 0);
  EXPECT_EQ(end["deleted"], 0);
  EXPECT_THAT(Column("select lutm from tstables"), ElementsAre(end["lutm"].get<std::string>()));
  EXPECT_THAT(end["causes"], IsEmpty());
}

TEST_F(TheRunRecord, HasTheMethodThatTheTableIsCopiedBy) {
  EXPECT_EQ(Copy().status, 0);
  Sql("update tstables set syme = 2");
  EXPECT_EQ(Copy().status, 0);
  EXPECT_EQ(Records().at(3)["method"], "changed");
  EXPECT_EQ(Records().at(3)["inserted"], 0);
}

TEST_F(TheRunRecord, HasTheTableAsItWasGiven) {
  pieces_.table = "tcccp030=E00001=E";
  Sql("insert into tstables (TableName, in_use, syme) values ('tcccp030', 0, 2)");
  EXPECT_EQ(Copy().status, 0);
  EXPECT_EQ(Records().at(0)["table"], "tcccp030=E00001=E");
  EXPECT_EQ(End()["method"], "full");  // whatever the table's own is
}

TEST_F(TheRunRecord, HasTheWholeChainOfAFailedCopy) {
  pieces_.component2 = folder_ / "none.db";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 1);
  const Json end = End();
  EXPECT_EQ(end["outcome"], "failed");
  EXPECT_EQ(end["status"], 1);
  EXPECT_TRUE(end["lutm"].is_null());
  const Json chain = end["causes"].at(0);
  EXPECT_EQ(chain.at(0)["source"], "Copy Service Types");
  EXPECT_EQ(chain.at(0)["description"], " Copy of Service Types from Orvan to Local DB failed");
  EXPECT_EQ(chain.at(0)["number"].get<int>(), chain.at(1)["number"].get<int>() + 100);
  EXPECT_THAT(InnermostCause(end), HasSubstr("none.db"));
  for (const Json& link : chain) EXPECT_THAT(copy.err, HasSubstr(link["description"].get<std::string>()));
}

// The rows wait in a batch, so the copy may have counted more of them than are saved.
TEST_F(TheRunRecord, CountsTheRowsUntilTheFailureOfACopy) {
  Sql("create unique index one_row on tsmdm030 (cstp is null)");
  EXPECT_EQ(Copy().status, 1);
  EXPECT_EQ(End()["method"], "full");
  EXPECT_THAT(End()["inserted"].get<int>(), testing::AllOf(testing::Ge(1), testing::Le(3)));
  EXPECT_TRUE(End()["lutm"].is_null());
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("1"));
  EXPECT_THAT(InnermostCause(End()), HasSubstr("UNIQUE constraint failed"));
}

TEST_F(TheRunRecord, HasARefusal) {
  Sql("insert into tstables (TableName, in_use) values ('tsmdm030', 1)");
  EXPECT_EQ(Copy().status, 3);
  EXPECT_EQ(End()["outcome"], "refused");
  EXPECT_TRUE(End()["method"].is_null());
  EXPECT_THAT(InnermostCause(End()), StartsWith("The table tsmdm030 is in progress, so it was not copied"));
}

TEST_F(TheRunRecord, HasACopyWithNothingToCopy) {
  pieces_.table = "tsmdm03";
  EXPECT_EQ(Copy().status, 4);
  EXPECT_EQ(End()["outcome"], "nothing");
  EXPECT_TRUE(End()["method"].is_null());
}

TEST_F(TheRunRecord, HasAFailureToConnect) {
  pieces_.connection = "Provider=SQLite;Data Source=" + (folder_ / "none.db");
  EXPECT_EQ(Copy().status, 2);
  EXPECT_EQ(End()["outcome"], "error");
  EXPECT_TRUE(End()["inserted"].is_null());
  EXPECT_THAT(End()["causes"].dump(), HasSubstr("none.db"));
}

TEST_F(TheRunRecord, HasACompleteCopyWhoseTableStaysInProgress) {
  RemakeControlTable("in_use smallint check (in_use = 1)", "lutm datetime");
  EXPECT_EQ(Copy().status, 2);
  EXPECT_EQ(End()["outcome"], "error");
  EXPECT_EQ(End()["inserted"], 3);
  EXPECT_FALSE(End()["lutm"].is_null());
  EXPECT_THAT(InnermostCause(End()), HasSubstr("CHECK constraint failed"));
}

TEST_F(TheRunRecord, HasTooFewPiecesIfTheyNameAFolder) {
  EXPECT_EQ(Run({"x,y,tsmdm030," + pieces_.logs}).status, 2);
  EXPECT_THAT(InnermostCause(End()), StartsWith("Invalid Number of Arguments"));
}

TEST_F(TheRunRecord, HasTheCauseOfAFailureThatItsOwnLogCannotTake) {
  std::filesystem::create_directory(folder_ / "logs/QMXDBSynclog.txt");
  pieces_.connection = "Provider=Papyrus";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("Usage:"));
  EXPECT_THAT(End()["causes"].dump(), HasSubstr("Papyrus"));
}

TEST_F(TheRunRecord, HasAnInterruption) {
  EndAt("getServiceType", 5, "raise " + std::to_string(SIGTERM));
  EXPECT_EQ(Copy().status, 1);
  EXPECT_EQ(End()["outcome"], "failed");
  EXPECT_EQ(End()["causes"].at(0).back()["number"], 18);
}

TEST_F(TheRunRecord, HasTheExitOfAComponent) {
  for (const char* what : {"exit 0", "exit 3 on a thread", "quick_exit 0"}) {
    std::filesystem::remove(folder_ / "logs/QMXRuns.jsonl");
    Sql("delete from tstables");
    EndAt("getServiceType", 5, what);
    EXPECT_EQ(Copy().status, 2) << what;
    const Json end = End();
    EXPECT_EQ(end["outcome"], "ended") << what;
    EXPECT_EQ(end["status"], 2);
    EXPECT_EQ(end["table"], "tsmdm030");
    EXPECT_EQ(InnermostCause(end),
              "exit was called by something other than the program during getServiceType of "
              "ServiceTypes.ServiceTypesManager: the table stays in progress: qmxadmin release tsmdm030");
  }
}

TEST_F(TheRunRecord, HasACrash) {
  for (const char* what : {"fault", "overflow", "raise 6"}) {
    std::filesystem::remove(folder_ / "logs/QMXRuns.jsonl");
    Sql("delete from tstables");
    EndAt("List", 1, what);
    const int status = Copy().status;
    EXPECT_THAT(status, testing::AnyOf(128 + SIGSEGV, 128 + SIGABRT)) << what;
    const Json end = End();
    EXPECT_EQ(end["outcome"], "crashed");
    EXPECT_EQ(end["status"], status);
    EXPECT_THAT(InnermostCause(end), HasSubstr(" ended the run during List of ServiceTypes.ServiceTypesManager: "));
  }
}

TEST_F(TheRunRecord, HasNoEndIfTheProcessWasKilledOrLeftByTheSystemsOwnExit) {
  for (const std::string& what : {"raise " + std::to_string(SIGKILL), std::string("_exit 0")}) {
    std::filesystem::remove(folder_ / "logs/QMXRuns.jsonl");
    EndAt("List", 1, what);
    Sql("delete from tstables");
    Copy();
    ASSERT_EQ(Records().size(), 1U) << what;
    EXPECT_EQ(Records()[0]["record"], "start");
  }
}

TEST_F(TheRunRecord, IsWrittenForOneRunAlone) {
  EXPECT_EQ(Run({"--version"}).status, 0);
  EXPECT_EQ(Run({}).status, 2);  // no folder is named
  EXPECT_FALSE(std::filesystem::exists(folder_ / "logs/QMXRuns.jsonl"));
}

TEST_F(TheRunRecord, ThatCannotBeWrittenPrintsOneLineAndDoesNotFailTheCopy) {
  std::filesystem::create_directory(folder_ / "logs/QMXRuns.jsonl");
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 0);
  EXPECT_EQ(copy.err, "error 75, Run record: The run is not recorded: \"" + pieces_.logs +
                          "/QMXRuns.jsonl\" cannot be written: Is a directory.\n");
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("3"));
}

TEST_F(TheRunRecord, DoesNotWaitForAReaderOfAPipe) {
  ASSERT_EQ(mkfifo((folder_ / "logs/QMXRuns.jsonl").c_str(), 0600), 0);
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 0);
  EXPECT_THAT(copy.err, HasSubstr("it is a named pipe, not a regular file"));
}

TEST_F(TheRunRecord, NeverHasAPassword) {
  const std::vector<std::string> connections = {
      "Provider=Papyrus;PWD=hush-hush;Password=hush-hush",
      "Provider=SQLite;Data Source=" + (folder_ / "local.db") + ";PWD=hush-hush",
      "Driver=none;Server=db1;UID=qmx;PWD={hush;hush}",
      "Driver=none;Server=db1;UID=qmx;PWD=hu;hush=hush",
      "Driver=SQLite3;Database=" + (folder_ / "none/local.db") + ";PWD=\"hush-hush\"",
      "DSN=none;Password='hush-hush'",
      "PWD=hush-hush;Provider=SQLite;Data Source=hush-hush",
      "PWD=hush-hush"};
  for (const std::string& connection : connections) {
    pieces_.connection = connection;
    Copy();
  }
  EXPECT_EQ(Records().size(), 2 * connections.size());
  EXPECT_THAT(Log("QMXRuns.jsonl"), Not(HasSubstr("hush")));

  // A comma moves the pieces behind it.
  EXPECT_EQ(Run({"Driver=none;PWD=hu,x,{hush-hush};Server=db1," + pieces_.logs + ",a,b"}).status, 2);
  EXPECT_THAT(Log("QMXRuns.jsonl"), Not(HasSubstr("hush")));
  EXPECT_EQ(Records().back()["table"], "***");
}

TEST_F(TheRunRecord, OfRunsSideBySideNeverMix) {
  std::vector<std::unique_ptr<RunningProcess>> runs;
  for (int run = 0; run < 12; ++run) {
    const std::string pieces = "x,y,table " + std::to_string(run) + "," + pieces_.logs;
    runs.push_back(std::make_unique<RunningProcess>(QMXDATACOPY, std::vector{pieces}, environment_));
  }
  for (const auto& run : runs) EXPECT_EQ(run->Wait().status, 2);
  const std::vector<Json> records = Records();  // each of them parsed
  EXPECT_EQ(records.size(), 24U);
  std::set<std::string> numbers;
  for (const Json& record : records) numbers.insert(record["run"]);
  EXPECT_EQ(numbers.size(), 12U);
}

}  // namespace
}  // namespace qmx::test
