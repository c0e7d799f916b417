// The process entry: what it answers, how arguments become a command line, and the status that each ending gives.
#include "tests/startup/data_copy_process.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

using ProcessEntry = DataCopyProcess;

TEST_F(ProcessEntry, AnswersHelpOnStandardOutput) {
  const Process answer = Run({"--help"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.out, StartsWith("Usage: qmxdatacopy "));
  EXPECT_THAT(answer.out, HasSubstr("Exit status: 0 the copy is complete, 1 it failed, 2 "));
  EXPECT_EQ(answer.err, "");
}

TEST_F(ProcessEntry, AnswersVersionOnStandardOutput) {
  const Process answer = Run({"--version"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.out, MatchesRegex("qmxdatacopy [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(answer.err, "");
}

TEST_F(ProcessEntry, AnswersAnOptionOnlyIfItIsTheOnlyArgument) {
  const Process answer = Run({"--help", "--version"});
  EXPECT_EQ(answer.status, 2);
  EXPECT_EQ(answer.out, "");
  EXPECT_THAT(answer.err, HasSubstr("has 1 piece(s) between commas"));
}

TEST_F(ProcessEntry, FailsIfItsAnswerCannotBeWritten) {
  EXPECT_EQ(test::Run("/bin/sh", {"-c", std::string(QMXDATACOPY) + " --help > /dev/full"}).status, 2);
}

TEST_F(ProcessEntry, CopiesATableAndReportsToTheSchedulingServer) {
  pieces_.rest = ",17";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 0);
  EXPECT_EQ(copy.out, "");
  EXPECT_EQ(copy.err, "");
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("3"));
  EXPECT_THAT(Column("select cstp from tsmdm030 where cstp = 'OLD'"), IsEmpty());
  EXPECT_THAT(InUse(), ElementsAre("0"));
  EXPECT_THAT(Log("tsmdm030.log"),
              MatchesRegex("\"Date-Time :[0-9]{4}-[0-9]{2}-[0-9]{2} : [0-9]{2}:[0-9]{2}:[0-9]{2}\"\r\n"
                           "\"Table : tsmdm030 - 3 records Inserted\"\r\n"));
  EXPECT_THAT(Board(), HasSubstr("Service Types (tsmdm030) : Data copy started\n"));
  EXPECT_THAT(Board(), HasSubstr("Service Types (tsmdm030) : Copy result. Added - 3;   Updated - 0;   Removed - 0\n"));
  EXPECT_THAT(Board(), HasSubstr("status | 17 | tsmdm030 | 40\n"));
}

TEST_F(ProcessEntry, JoinsItsArgumentsByOneBlank) {
  std::filesystem::rename(folder_ / "logs", folder_ / "my logs");
  const Process copy =
      Run({pieces_.connection + ",", ",", "tsmdm030,", folder_ / "my", "logs,OrvanSandbox,", pieces_.component2});
  EXPECT_EQ(copy.status, 0) << copy.err;
  EXPECT_THAT(ReadFile(folder_ / "my logs/tsmdm030.log"), HasSubstr("3 records Inserted"));
}

TEST_F(ProcessEntry, WithSixPiecesReportsNothingToTheSchedulingServer) {
  EXPECT_EQ(Copy().status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "board"));
}

TEST_F(ProcessEntry, TracesComponentsAndDatabaseInTheOrderOfTheCallsIfItIsAskedTo) {
  environment_["QMX_TRACE"] = folder_ / "trace.jsonl";
  EXPECT_EQ(Copy().status, 0);
  const std::string trace = ReadFile(folder_ / "trace.jsonl");
  std::size_t place = 0;
  for (const char* text : {R"({"kind":"connection","op":"Open")", R"("progid":"ServiceTypes.ServiceTypesManager")",
                           "DELETE FROM tsmdm030 WHERE 1=1", R"("column":"cstp")", R"("op":"Close"})"}) {
    place = trace.find(text, place);
    ASSERT_NE(place, std::string::npos) << text << " is missing, or stands too early in\n" << trace;
  }
}

TEST_F(ProcessEntry, EndsWithThreeIfTheTableIsInProgress) {
  Sql("insert into tstables (TableName, in_use) values ('tsmdm030', 1)");
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 3);
  EXPECT_EQ(
      copy.err,
      "error 3219, clsDataCopy: The table tsmdm030 is in progress, so it was not copied: another run copies it, or "
      "one ended without releasing it. [what to do: copy again later; when no run copies it, release it with "
      "\"qmxadmin release tsmdm030\"]\n");
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), ElementsAre("1"));
}

TEST_F(ProcessEntry, RefusesACodeInCapitalsIfTheControlTableIgnoresCase) {
  Sql("drop table tstables");
  for (const LocalTable& table : LocalTables()) {
    for (const std::string& statement : SqliteDialect().CreateTableOfAnyCase(table)) Sql(statement);
  }
  Sql("insert into tstables (TableName, in_use) values ('tsmdm030', 1)");
  pieces_.table = "TSMDM030";
  EXPECT_EQ(Copy().status, 3);
  Sql("update tstables set in_use = 0");
  EXPECT_EQ(Copy().status, 0);
  EXPECT_THAT(Column("select TableName from tstables where lutm is not null"), ElementsAre("tsmdm030"));
  EXPECT_THAT(Column("select count(*) from tstables"), ElementsAre("1"));
}

TEST_F(ProcessEntry, EndsWithFourAndASentenceIfThereIsNoSuchTableOrCalendarKind) {
  pieces_.rest = ",17";
  for (const auto& [table, sentence] : std::map<std::string, std::string>{
           {"tsmdm03", "There is no table \"tsmdm03\" that can be copied: nothing was copied. ["},
           {"tcccp030=X=X", "There is no calendar kind \"X\": nothing was copied. ["}}) {
    pieces_.table = table;
    const Process copy = Copy();
    EXPECT_EQ(copy.status, 4) << table;
    EXPECT_THAT(copy.err, HasSubstr(sentence));
  }
  EXPECT_THAT(Board(), HasSubstr("status | 17 | tsmdm03 | 40\n"));
  EXPECT_THAT(Board(), HasSubstr("status | 17 | tcccp030 | 40\n"));
}

TEST_F(ProcessEntry, EndsWithTwoIfTheTableCannotBeReleasedAfterTheCopy) {
  RemakeControlTable("in_use smallint check (in_use = 1)", "lutm datetime");
  pieces_.rest = ",17";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("CHECK constraint failed: in_use = 1"));
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("3"));
  EXPECT_THAT(InUse(), ElementsAre("1"));
  EXPECT_THAT(Board(), HasSubstr("status | 17 | tsmdm030 | 40\n"));
  pieces_.table = "tsmdm03";
  EXPECT_EQ(Copy().status, 2);  // a table that stays in progress is worse than one that is unknown
}

TEST_F(ProcessEntry, EndsWithTwoIfTheLastUpdateTimeCannotBeWritten) {
  RemakeControlTable("in_use smallint", "lutm datetime check (lutm is null)");
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, StartsWith("error -2147217873, clsDataCopy: The last update time of table tsmdm030 was "
                                   "not written. [what to do: "));
  EXPECT_THAT(copy.err, HasSubstr("CHECK constraint failed: lutm is null"));
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("3"));
  EXPECT_THAT(InUse(), ElementsAre("0"));
}

TEST_F(ProcessEntry, InWholeModeKeepsTheOldRowsWhereTheLastUpdateTimeCannotBeWritten) {
  RemakeControlTable("in_use smallint", "lutm datetime check (lutm is null)");
  environment_["QMX_COPY"] = "whole";
  pieces_.rest = ",17";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 1);
  EXPECT_THAT(copy.err, StartsWith("error -2147217773, Copy Service Types: "));
  EXPECT_THAT(copy.err, AllOf(HasSubstr("CHECK constraint failed: lutm is null"),
                              HasSubstr("rows: as they were before the copy"), Not(HasSubstr("was not written"))));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), ElementsAre("0"));
  EXPECT_THAT(Board(), HasSubstr("status | 17 | tsmdm030 | 20\n"));
  EXPECT_THAT(ReadFile(folder_ / "logs/QMXRuns.jsonl"),
              AllOf(HasSubstr("\"mode\":\"whole\""), HasSubstr("\"lutm\":null")));
}

TEST_F(ProcessEntry, CopiesInWholeModeAndRecordsIt) {
  environment_["QMX_COPY"] = "whole";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 0) << copy.err;
  EXPECT_EQ(copy.err, "");
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("3"));
  EXPECT_THAT(InUse(), ElementsAre("0"));
  EXPECT_THAT(ReadFile(folder_ / "logs/QMXRuns.jsonl"),
              AllOf(HasSubstr("\"mode\":\"whole\""), HasSubstr("\"outcome\":\"complete\"")));
}

TEST_F(ProcessEntry, DoesNotStartInAModeThatItDoesNotKnow) {
  environment_["QMX_COPY"] = "half";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, StartsWith("error 5, qmxdatacopy: QMX_COPY is \"half\". It may be \"whole\" or empty."));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), IsEmpty());
  EXPECT_THAT(ReadFile(folder_ / "logs/QMXRuns.jsonl"), HasSubstr("\"mode\":null"));
}

TEST_F(ProcessEntry, EndsWithOneAndTheChainOfCausesIfTheCopyFails) {
  pieces_.component2 = folder_ / "none.db";
  pieces_.rest = ",17";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 1);
  EXPECT_EQ(copy.out, "");
  EXPECT_THAT(copy.err, StartsWith("error "));
  EXPECT_THAT(copy.err, HasSubstr(", Copy Service Types:  Copy of Service Types from Orvan to Local DB failed\n"));
  EXPECT_THAT(copy.err, HasSubstr("\n  because of error "));
  EXPECT_THAT(copy.err, HasSubstr("none.db"));
  EXPECT_THAT(copy.err, Not(HasSubstr("Usage:")));
  EXPECT_THAT(Log("tsmdm030.log"),
              HasSubstr("\"Copy Service Types\",\" Copy of Service Types from Orvan to Local DB failed\"\r\n"));
  if (!std::filesystem::exists("/dev/log")) {  // else it is this machine's system log that was told
    EXPECT_THAT(Log("evtlog.txt"), HasSubstr("]: \r\nDatabase    : local\r\nTable       : tsmdm030\r\n"
                                             "Description : DataCopy Failed, see logfile '" +
                                             pieces_.logs + "\\tsmdm030.log' for details\r\n"));
  }
  EXPECT_THAT(Board(), HasSubstr("Service Types (tsmdm030) : Data copy FAILED\n"));
  EXPECT_THAT(Board(), HasSubstr("status | 17 | tsmdm030 | 20\n"));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), ElementsAre("0"));
}

TEST_F(ProcessEntry, WithoutArgumentsPrintsTheUsageAndEndsWithTwo) {
  const Process copy = Run({});
  EXPECT_EQ(copy.status, 2);
  EXPECT_EQ(copy.out, "");
  EXPECT_THAT(copy.err, StartsWith("error 9, QMX Data Copy - Start: Subscript out of range: the command line has 0 "
                                   "piece(s) between commas, and none numbered 3; the one numbered 3 is the log "
                                   "directory, into which the failure would be written\n"
                                   "  because of error 9999, QMX Data Copy - Start: Invalid Number of Arguments, "
                                   "Expected 5 or More.  Application cannot Start [pieces: 0 of at least 6; "));
  EXPECT_THAT(copy.err, HasSubstr("\nUsage: qmxdatacopy 'CONNECTION,DATABASE,TABLE,LOGDIR,COMPONENT1,COMPONENT2"));
}

TEST_F(ProcessEntry, WithFivePiecesWritesTheFailureLogAndEndsWithTwo) {
  const Process copy = Run({"x,y,tsmdm030," + pieces_.logs + ",OrvanSandbox"});
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(Log("QMXDBSynclog.txt"),
              MatchesRegex("Date-Time :[0-9-]{10} : [0-9:]{8}\r\n"
                           "Data Copy Failed:\r\n"
                           "Error is - 9999: Invalid Number of Arguments, Expected 5 or More. \r\n"
                           " Application cannot Start\r\n"));
  EXPECT_THAT(copy.err, HasSubstr("[pieces: 5 of at least 6; wanted: connection text, default database, table code, "
                                  "log directory, and the two of the component]\n"));
}

TEST_F(ProcessEntry, WritesTheFailureLogToTheSystemDriveIfNoDirectoryIsNamed) {
  std::filesystem::create_directory(folder_ / "drive");
  EXPECT_EQ(Run({"x,y,tsmdm030, ,OrvanSandbox"}).status, 2);
  EXPECT_THAT(ReadFile(folder_ / "drive/QMXDBSynclog.txt"), HasSubstr("Error is - 9999: "));
}

TEST_F(ProcessEntry, EndsAsUsualIfTheReaderOfItsStandardErrorIsGone) {
  const Process shell = test::Run(
      "/bin/sh", {"-c", "{ " + std::string(QMXDATACOPY) + "; echo $? > '" + folder_ / "status" + "'; } 2>&1 | true"});
  EXPECT_EQ(shell.status, 0);
  EXPECT_EQ(ReadFile(folder_ / "status"), "2\n");
}

}  // namespace
}  // namespace qmx::test
