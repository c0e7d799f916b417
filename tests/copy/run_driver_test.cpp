// The run: events in order, the guard in tstables, the table code's two forms, the two traps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "tests/copy/service_type.h"
#include "tests/support/copy_rig.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Failed(const std::string& table) {
  return "event Error 2026-11-20 14:05:09, \"" + table + "\", -1, \"DataCopy Failed, see logfile 'C:\\log\\" + table +
         ".log' for details\"";
}

TEST(Run, RaisesStartThenCompletionWithItsCountsThenDone) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A"), ServiceType("B")});
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tsmdm030\", 2, 0, 0", "event done"));
  EXPECT_THAT(rig.failures.chains, IsEmpty());
  EXPECT_EQ(rig.declarations.statusWhenFinished, ExitStatus::Complete);
}

TEST(Run, NotesThatItCopiedByChangeWhatItCountedAndTheNewLastUpdateTime) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 2, "2026-11-19 08:00:00");
  rig.Sql("insert into tsmdm030 (cstp) values ('B'), ('C'), ('D'), ('E'), ('F')");
  rig.erp.Lists(kServiceTypesManager, {});
  rig.erp.Audits(kServiceTypesRecord, {Inserted(ServiceType("A")), Updated(ServiceType("B")), Updated(ServiceType("C")),
                                       Deleted(DeletedServiceType("D")), Deleted(DeletedServiceType("E")),
                                       Deleted(DeletedServiceType("F"))});
  rig.Run("tsmdm030");
  const RunFacts& facts = rig.declarations.facts;
  EXPECT_EQ(facts.byChange, std::optional(true));
  ASSERT_TRUE(facts.counts);
  EXPECT_EQ(facts.counts->inserted, 1);
  EXPECT_EQ(facts.counts->updated, 2);
  EXPECT_EQ(facts.counts->deleted, 3);
  EXPECT_EQ(facts.lastUpdateTime, std::optional(DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9)));
}

TEST(Run, NotesThatItCopiedInFullWhetherForItsSyncMethodOnRequestOrBecauseItIsOneCalendar) {
  CopyRig rig;
  rig.Run("tsmdm030");
  EXPECT_EQ(rig.declarations.facts.byChange, std::optional(false));

  CopyRig requested;
  requested.ControlRecord("tsmdm030", 2, "2026-11-19 08:00:00");
  requested.declarations.copiesInFull = true;
  requested.Run("tsmdm030");
  EXPECT_EQ(requested.declarations.facts.byChange, std::optional(false));

  CopyRig calendar;
  calendar.ControlRecord("tcccp030", 2, "2026-11-19 08:00:00");
  calendar.Run("tcccp030=DAY=C");
  EXPECT_EQ(calendar.declarations.facts.byChange, std::optional(false));
}

TEST(Run, ChecksSetsReadsCopiesReleasesAndClosesInThisOrder) {
  CopyRig rig;
  rig.Run("unknown1");
  EXPECT_THAT(rig.calls.Lines(),
              ElementsAre("connection.Open",                                                         //
                          "rs2.Open \"select * from tstables where tablename = 'unknown1'\" 1 3 1",  //
                          "rs2.Close",                                                               //
                          "rs3.Open \"select * from tstables where tablename = 'unknown1'\" 1 3 1",  //
                          "rs3.AddNew", "rs3.TableName = \"unknown1\"", "rs3.in_use = 1", "rs3.freq = 0",
                          "rs3.reqd = 1", "rs3.Update", "rs3.Close",
                          "rs4.Open \"select * from tstables where tablename = 'unknown1'\" 1 3 1",  //
                          "rs4.Close",                                                               //
                          "event Started 2026-11-20 14:05:09, \"unknown1\"",
                          "rs5.Open \"select * from tstables where tablename = 'unknown1'\" 1 3 1",  //
                          "rs5.in_use = 0", "rs5.Update", "rs5.Close",                               //
                          "connection.Close",                                                        //
                          "event Complete 2026-11-20 14:05:09, \"unknown1\", 0, 0, 0", "event done"));
}

TEST(Run, CopiesNothingForAnUnknownTableAndCompletesWithZeroCounts) {
  CopyRig rig;
  rig.Run("unknown1");
  EXPECT_THAT(rig.Rows("tstables", {"TableName", "in_use", "freq", "reqd", "lutm"}),
              ElementsAre("\"unknown1\", 0, 0, 1, null"));
  EXPECT_EQ(rig.CopyLog("unknown1"), "");
}

TEST(Run, ReportsAnUnknownTableThoughItCountsAsFinished) {
  CopyRig rig;
  rig.Run("unknown1");
  EXPECT_THAT(
      rig.failures.chains,
      ElementsAre("error 5, clsDataCopy: There is no table \"unknown1\" that can be copied: nothing was copied. "
                  "[what to do: correct the table code on the command line; \"qmxadmin status\" lists all codes]"));
  EXPECT_EQ(rig.declarations.statusWhenFinished, ExitStatus::NothingToCopy);
}

TEST(Run, RefusesATableThatIsInProgressAndLeavesItsFlag) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 1, "2026-01-02 03:04:05");
  rig.Sql("update tstables set in_use = 1");
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(), ElementsAre("event AlreadyInProgress 2026-11-20 14:05:09, \"tsmdm030\"", "event done"));
  EXPECT_EQ(rig.InUse("tsmdm030"), "1");
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-01-02 03:04:05");
  EXPECT_EQ(rig.calls.Count("connection.Close"), 1u);
  EXPECT_THAT(rig.calls.StartingWith({"create "}), IsEmpty());
}

TEST(Run, ReportsARefusalWithTheLastUpdateTimeAndWhatToDo) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 1, "2026-01-02 03:04:05");
  rig.Sql("update tstables set in_use = 1");
  rig.Run("tsmdm030");
  EXPECT_THAT(
      rig.failures.chains,
      ElementsAre(
          "error 3219, clsDataCopy: The table tsmdm030 is in progress, so it was not copied: another run copies "
          "it, or one ended without releasing it. [last update time: 2026-01-02 03:04:05; what to do: copy again "
          "later; when no run copies it, release it with \"qmxadmin release tsmdm030\"]"));
}

TEST(Run, ReportsARefusalWithoutALastUpdateTimeIfThereIsNone) {
  for (const char* change : {"update tstables set lutm = null", "alter table tstables drop column lutm"}) {
    CopyRig rig;
    rig.ControlRecord("tsmdm030", 1);
    rig.Sql("update tstables set in_use = 1");
    rig.Sql(change);
    rig.Run("tsmdm030");
    EXPECT_THAT(rig.Events(), ElementsAre("event AlreadyInProgress 2026-11-20 14:05:09, \"tsmdm030\"", "event done"));
    EXPECT_THAT(rig.failures.chains,
                ElementsAre(HasSubstr("ended without releasing it. [what to do: copy again later")));
  }
}

TEST(Run, CopiesAnUpperCaseCodeLikeALowerCaseOneAndKeepsItInLogNameAndEvents) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.Run("TSMDM030");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"TSMDM030\"",
                                        "event Complete 2026-11-20 14:05:09, \"TSMDM030\", 1, 0, 0", "event done"));
  EXPECT_THAT(rig.CopyLog("TSMDM030"), HasSubstr("Table : TSMDM030 - 1 records Inserted"));
  EXPECT_EQ(rig.CopyLog("tsmdm030"), "");
  EXPECT_EQ(rig.Rows("tsmdm030", {"cstp"}).size(), 1u);
}

TEST(Run, NeverSplitsATableNameOfEightCharactersForItsCode) {
  CopyRig rig;
  rig.Run("ab=cd=ef");
  EXPECT_EQ(rig.InUse("ab=cd=ef"), "0");
  // The event's table name is split all the same.
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"ab=cd=ef\"",
                                        "event Complete 2026-11-20 14:05:09, \"ab\", 0, 0, 0", "event done"));
}

TEST(Run, CountsTheCharactersOfATableNameNotItsBytes) {
  CopyRig eight;
  eight.Run("ä=ö=ü=ßé");
  EXPECT_EQ(eight.InUse("ä=ö=ü=ßé"), "0");
  CopyRig nine;
  nine.Run("äöü€=ö=ü=");
  EXPECT_EQ(nine.InUse("äöü€"), "0");
}

TEST(Run, SplitsALongerTableNameAndCopiesItsFirstPart) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.Run("tsmdm030=x");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tsmdm030\", 1, 0, 0", "event done"));
}

TEST(Run, RaisesTwoStartsForTheCalendarOfAnEmployee) {
  CopyRig rig;
  rig.Run("tcccp030=4711=E");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tcccp030\"",
                                        "event Started 2026-11-20 14:05:09, \"tcccp030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tcccp030\", 0, 0, 0", "event done"));
  EXPECT_THAT(rig.calls.Lines(), testing::Contains(HasSubstr("select * from tsmdm140 where emno = '4711'")));
  // An employee without a calendar leaves nothing undone.
  EXPECT_THAT(rig.failures.chains, IsEmpty());
  EXPECT_EQ(rig.declarations.statusWhenFinished, ExitStatus::Complete);
}

TEST(Run, RaisesTwoStartsForACalendarByItsCode) {
  CopyRig rig;
  rig.erp.Lists("Calendars.CalendarManager", {}, "listActualCalendar");
  rig.Run("tcccp030=DAY=C");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tcccp030\"",
                                        "event Started 2026-11-20 14:05:09, \"tcccp030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tcccp030\", 0, 0, 0", "event done"));
  EXPECT_EQ(rig.calls.Count("connection.Execute DELETE FROM tcccp030 WHERE ccal = 'DAY'"), 1u);
}

TEST(Run, ComparesTheCalendarsKindWithItsCase) {
  for (const std::string name : {"tcccp030=4711=e", "tcccp030=4711=c", "tcccp030=4711=X", "tcccp030=4711="}) {
    CopyRig rig;
    rig.Run(name);
    EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tcccp030\"",
                                          "event Complete 2026-11-20 14:05:09, \"tcccp030\", 0, 0, 0", "event done"))
        << name;
    EXPECT_THAT(rig.failures.chains, ElementsAre(HasSubstr("There is no calendar kind \""))) << name;
    EXPECT_EQ(rig.declarations.statusWhenFinished, ExitStatus::NothingToCopy) << name;
    EXPECT_THAT(rig.calls.StartingWith({"create "}), IsEmpty()) << name;
  }
}

TEST(Run, FailsOnACalendarWithoutAKind) {
  CopyRig rig;
  rig.Run("tcccp030=4711");
  EXPECT_THAT(rig.Events(),
              ElementsAre("event Started 2026-11-20 14:05:09, \"tcccp030\"", Failed("tcccp030"), "event done"));
  EXPECT_EQ(rig.InUse("tcccp030"), "0");
  ASSERT_EQ(rig.failures.chains.size(), 1u);
  EXPECT_THAT(rig.failures.chains[0],
              HasSubstr("error 9, clsDataCopy: Subscript out of range: the table code \"tcccp030=4711\""));
}

TEST(Run, EndsInASubscriptErrorAfterTheRunOfAnEmptyTableName) {
  CopyRig rig;
  EXPECT_EQ(Raised([&] { rig.Run(""); }).Number(), 9);
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"\""));
  EXPECT_EQ(rig.InUse(""), "0");
}

TEST(Run, SelectsTheDefaultDatabaseUntrimmedUnlessItIsBlank) {
  CopyRig rig;
  clsDataCopy engine(rig.platform, rig.declarations, rig.events);
  engine.StartDataCopy("Provider=SQLite;Data Source=" + rig.folder.Path().string(), "local", "unknown1", "C:\\log", "");
  EXPECT_EQ(rig.calls.Count("connection.defaultdatabase local"), 1u);
  EXPECT_EQ(rig.declarations.CurrentDatabaseName, "local");

  rig.calls.Clear();
  clsDataCopy(rig.platform, rig.declarations, rig.events)
      .StartDataCopy(rig.ConnectionText(), "  ", "unknown1", "C:\\log", "");
  EXPECT_THAT(rig.calls.StartingWith({"connection.defaultdatabase"}), IsEmpty());

  rig.calls.Clear();
  EXPECT_THAT(Raised([&] {
                clsDataCopy(rig.platform, rig.declarations, rig.events)
                    .StartDataCopy("Provider=SQLite;Data Source=" + rig.folder.Path().string(), " local", "unknown1",
                                   "C:\\log", "");
              }).Source(),
              "ReleaseCopyInProgress");
  EXPECT_THAT(rig.calls.Lines(), testing::Contains(testing::StartsWith("connection.defaultdatabase  local -> error")));
}

TEST(Run, NotesTheNameOfTheDatabaseThatItIsConnectedToIfNoneIsNamed) {
  CopyRig rig;
  const std::string file = rig.folder / "erp_copy.db";
  std::ofstream(file).close();  // an empty database
  EXPECT_THROW(clsDataCopy(rig.platform, rig.declarations, rig.events)
                   .StartDataCopy("Provider=SQLite;Data Source=" + file, "", "unknown1", "C:\\log", ""),
               Error);
  EXPECT_EQ(rig.declarations.CurrentDatabaseName, "erp_copy");
}

TEST(Run, ReportsAFailedCopyWithItsWholeChainAndReleasesTheTable) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {{{"getServiceType", Error(4242, "Orvan", "The record is locked.")}}});
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(),
              ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\"", Failed("tsmdm030"), "event done"));
  EXPECT_EQ(rig.InUse("tsmdm030"), "0");
  EXPECT_EQ(rig.calls.Count("connection.Close"), 1u);
  EXPECT_EQ(rig.CopyLog("tsmdm030"),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Copy Service Types\",\" Copy of Service Types from Orvan to Local DB failed\"\r\n");
  EXPECT_THAT(rig.failures.chains,
              ElementsAre("error 4342, Copy Service Types:  Copy of Service Types from Orvan to Local DB failed\n"
                          "  because of error 4242, Orvan: The record is locked. "
                          "[column: cstp; member: getServiceType; table: tsmdm030; key: of the listing's record 1]"));
}

TEST(Run, LetsTheReleasesFailureReachTheCallerWhenTheConnectionCannotBeOpened) {
  CopyRig rig;
  const Error error = Raised([&] {
    clsDataCopy(rig.platform, rig.declarations, rig.events)
        .StartDataCopy("Provider=SQLite;Data Source=/no/such/folder/local.db", "", "tsmdm030", "C:\\log", "");
  });
  EXPECT_EQ(error.Number(), errors::kConnectionClosed);
  EXPECT_EQ(error.Source(), "ReleaseCopyInProgress");
  EXPECT_EQ(error.Description(), "Release of Data copy in Progress flag for table tsmdm030 Failed");
  EXPECT_THAT(DescribeChain(error), HasSubstr("/no/such/folder/local.db"));
  EXPECT_THAT(rig.Events(), IsEmpty());
  EXPECT_THAT(rig.CopyLog("tsmdm030"), HasSubstr("/no/such/folder/local.db"));
}

TEST(Run, LogsThenReleasesThenClosesAfterAFailure) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {{{"getServiceType", Error(4242, "Orvan", "The record is locked.")}}});
  rig.Run("tsmdm030");
  const std::vector<std::string>& lines = rig.calls.Lines();
  const auto closed = std::find(lines.begin(), lines.end(), "manager.Close()");
  ASSERT_NE(closed, lines.end());
  EXPECT_THAT(std::vector<std::string>(closed + 1, lines.end()),
              ElementsAre("log \"Date-Time :2026-11-20 : 14:05:09\"",
                          "log \"Copy Service Types\",\" Copy of Service Types from Orvan to Local DB failed\"",
                          "rs5.Open \"select * from tstables where tablename = 'tsmdm030'\" 1 3 1", "rs5.in_use = 0",
                          "rs5.Update", "rs5.Close", "connection.Close", Failed("tsmdm030"), "event done"));
}

TEST(Run, RaisesEachEventWithTheCurrentTime) {
  CopyRig rig;
  rig.clock.step = 1;
  rig.Run("unknown1");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"unknown1\"",
                                        "event Complete 2026-11-20 14:05:10, \"unknown1\", 0, 0, 0", "event done"));
}

TEST(Run, BindsItsRecordSetToItsConnection) {
  CopyRig rig;
  rig.engine.StartDataCopy(rig.ConnectionText(), "", "unknown1", "C:\\log", "");
  EXPECT_EQ(rig.inside.LocalRecordSet().ActiveConnection(), &rig.inside.LocalConnection());
}

TEST(Run, TakesAFailingStartEventForAFailureOfTheCopy) {
  CopyRig rig;
  rig.events.failOn = "Started";
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(),
              ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\"", Failed("tsmdm030"), "event done"));
  EXPECT_EQ(rig.InUse("tsmdm030"), "0");
}

TEST(Run, PassesTheFailureOfALaterEventToItsCaller) {
  CopyRig rig;
  rig.events.failOn = "Complete";
  EXPECT_EQ(Raised([&] { rig.Run("unknown1"); }).Number(), 1234);
  EXPECT_EQ(rig.InUse("unknown1"), "0");
}

TEST(Run, EndsWithTheLogsFailureWhenTheErrorCannotBeLogged) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {{{"getServiceType", Error(4242, "Orvan", "The record is locked.")}}});
  rig.files.failOn = "Open";
  const Error error = Raised([&] { rig.Run("tsmdm030"); });
  EXPECT_EQ(error.Number(), errors::kDiskFull);
  EXPECT_THAT(DescribeChain(error), HasSubstr("The record is locked."));
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\""));
  EXPECT_EQ(rig.InUse("tsmdm030"), "1");  // the trap ended before the release
}

TEST(Run, PassesTheBusinessComponentOnUnchanged) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {});
  rig.Run("tsmdm030");
  EXPECT_EQ(rig.calls.Count("manager.initialize(\"Orvan, main\")"), 1u);
}

TEST(Run, TakesOnlyASyncMethodOfTwoForChangesOnly) {
  for (const int syncMethod : {0, 1, 3, -1}) {
    CopyRig rig;
    rig.ControlRecord("tsmdm030", syncMethod);
    rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
    rig.Run("tsmdm030");
    EXPECT_EQ(rig.calls.Count("manager.List(\"\", \"ZZZ\")"), 1u) << syncMethod;
  }
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 2);
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.erp.Audits(kServiceTypesRecord, {});
  rig.Run("tsmdm030");
  EXPECT_EQ(rig.calls.Count("create audit.AuditReader"), 1u);
  EXPECT_EQ(rig.calls.Count("manager.List(\"\", \"ZZZ\")"), 0u);
}

}  // namespace
}  // namespace qmx::test
