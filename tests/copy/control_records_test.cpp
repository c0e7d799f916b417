// The control records of tstables: found, missing, null and odd values, and every routine's failure.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/copy_rig.h"
#include "tests/support/faulty_driver.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ControlRecords : public testing::Test {
 protected:
  ControlRecords() { Connect(); }
  void Connect() {
    rig.inside.LogFile() = "C:\\log\\tsmdm030.log";
    rig.inside.Connect(rig.ConnectionText());
    rig.calls.Clear();
  }
  std::vector<std::string> Records() {
    return rig.Rows("tstables", {"TableName", "in_use", "freq", "reqd", "syme", "lutm"});
  }
  std::vector<std::string> DateCalls() { return rig.calls.StartingWith({"create java", "date"}); }

  CopyRig rig;
};

TEST(ControlRecordsTrap, KeepsTheRoutinesTextsWhenTheRecordSetCannotBeClosed) {
  std::unique_ptr<FaultyDriver> driver;
  CopyRig rig([&](Driver& inner) -> Driver& {
    driver = std::make_unique<FaultyDriver>(inner);
    return *driver;
  });
  rig.inside.LogFile() = "C:\\log\\tsmdm030.log";
  rig.inside.Connect(rig.ConnectionText());
  const Error error = Raised([&] {
    rig.inside.OnControlRecord("tsmdm030", {"Routine", "Touching the record of "}, [&](Recordset& record, bool) {
      record.AddNew();
      record.Fields("TableName") = "tsmdm030";
      record.Update();
      driver->before = [](const std::string& operation) {
        if (operation == "Commit") throw Error(errors::kDiskFull, "Test", "No space is left.");
      };
      throw Error(500, "Test", "The step fails.");
      return std::int16_t{0};
    });
  });
  EXPECT_EQ(DescribeChain(error),
            "error 500, Routine: Touching the record of tsmdm030 Failed\n"
            "  because of error 500, Test: The step fails.\n"
            "  because of error 61, Test: No space is left.");
  EXPECT_EQ(rig.CopyLog("tsmdm030"), "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Test\",\"The step fails.\"\r\n");
}

TEST_F(ControlRecords, TakeATableWithoutARecordAsNotInProgress) {
  EXPECT_FALSE(rig.inside.IsCopyInProgress("tsmdm030"));
  EXPECT_THAT(Records(), ElementsAre());
}

TEST_F(ControlRecords, TakeOnlyOneAsInProgress) {
  rig.ControlRecord("tsmdm030", 1);
  for (const char* value : {"0", "2", "-1", "null", "70000"}) {
    rig.Sql(std::string("update tstables set in_use = ") + value);
    EXPECT_FALSE(rig.inside.IsCopyInProgress("tsmdm030")) << value;
  }
  rig.Sql("update tstables set in_use = 1");
  EXPECT_TRUE(rig.inside.IsCopyInProgress("tsmdm030"));
  EXPECT_FALSE(rig.inside.IsCopyInProgress("tsmdm100"));
}

TEST_F(ControlRecords, DoNotRoundAFlagToInProgress) {
  rig.ControlRecord("tsmdm030", 1);
  for (const char* value : {"0.6", "1.4"}) {
    rig.Sql(std::string("update tstables set in_use = ") + value);
    EXPECT_FALSE(rig.inside.IsCopyInProgress("tsmdm030")) << value;
  }
}

TEST_F(ControlRecords, AreMadeByTheSetIfThereIsNone) {
  rig.inside.SetCopyInProgress("tsmdm030");
  EXPECT_THAT(rig.Rows("tstables", {"TableName", "in_use", "freq", "reqd", "lutm"}),
              ElementsAre("\"tsmdm030\", 1, 0, 1, null"));
  EXPECT_EQ(rig.inside.ReadSyncMethod("tsmdm030"), 0);
  rig.inside.ReleaseCopyInProgress("tsmdm030");
  EXPECT_THAT(rig.Rows("tstables", {"TableName", "in_use", "freq", "reqd", "lutm"}),
              ElementsAre("\"tsmdm030\", 0, 0, 1, null"));
}

TEST_F(ControlRecords, KeepEveryOtherColumnWhenTheFlagIsSetAndReleased) {
  rig.Sql(
      "insert into tstables (tablename, in_use, freq, reqd, syme, lutm) values "
      "('tsmdm030', 0, 7, 8, 2, '2026-01-02 03:04:05'), ('tsmdm100', 0, 0, 1, 1, null)");
  rig.inside.SetCopyInProgress("tsmdm030");
  EXPECT_THAT(Records(),
              ElementsAre("\"tsmdm030\", 1, 7, 8, 2, 2026-01-02 03:04:05", "\"tsmdm100\", 0, 0, 1, 1, null"));
  rig.inside.ReleaseCopyInProgress("tsmdm030");
  EXPECT_THAT(Records(),
              ElementsAre("\"tsmdm030\", 0, 7, 8, 2, 2026-01-02 03:04:05", "\"tsmdm100\", 0, 0, 1, 1, null"));
}

TEST_F(ControlRecords, GetTodayAsTheirTimeWhenTheReleaseHasToMakeOne) {
  rig.inside.ReleaseCopyInProgress("tsmdm030");
  EXPECT_THAT(rig.Rows("tstables", {"TableName", "in_use", "lutm"}), ElementsAre("\"tsmdm030\", 0, 2026-11-20"));
}

TEST_F(ControlRecords, GiveTheSyncMethodAndZeroForNone) {
  EXPECT_EQ(rig.inside.ReadSyncMethod("tsmdm030"), 0);
  rig.ControlRecord("tsmdm030", 2);
  EXPECT_EQ(rig.inside.ReadSyncMethod("tsmdm030"), 2);
  rig.Sql("update tstables set syme = 3");
  EXPECT_EQ(rig.inside.ReadSyncMethod("tsmdm030"), 3);
  rig.Sql("update tstables set syme = null");
  EXPECT_EQ(rig.inside.ReadSyncMethod("tsmdm030"), 0);
}

TEST_F(ControlRecords, TakeTheLastUpdateTimeAndAreMadeForIt) {
  rig.inside.WriteLastUpdateTime("tsmdm030", DateTime::FromDate(2026, 11, 20).PlusTime(1, 2, 3));
  EXPECT_THAT(rig.Rows("tstables", {"TableName", "lutm"}), ElementsAre("\"tsmdm030\", 2026-11-20 01:02:03"));
  rig.inside.WriteLastUpdateTime("tsmdm030", DateTime::FromDate(2027, 1, 1));
  EXPECT_THAT(rig.Rows("tstables", {"TableName", "lutm"}), ElementsAre("\"tsmdm030\", 2027-01-01"));
}

TEST_F(ControlRecords, AreReadWithTheFiveArgumentsOfEveryOpen) {
  rig.ControlRecord("tsmdm030", 1);
  rig.inside.WriteLastUpdateTime("tsmdm030", DateTime::FromDate(2027, 1, 1));
  EXPECT_THAT(rig.calls.Lines(), ElementsAre("rs2.Open \"select * from tstables where tablename = 'tsmdm030'\" 1 3 1",
                                             "rs2.lutm = 2027-01-01", "rs2.Update", "rs2.Close"));
}

TEST_F(ControlRecords, SetTheDateObjectsDayBeforeItsMonthAndYear) {
  rig.ControlRecord("tsmdm030", 2, "2026-01-31 07:08:09");
  rig.inside.LastUpdateAsDateObject("tsmdm030");
  EXPECT_THAT(DateCalls(),
              ElementsAre("create java:java.util.Date", "date1.setDate(31)", "date1.setmonth(0)", "date1.setYear(126)",
                          "date1.setHours(7)", "date1.setMinutes(8)", "date1.setSeconds(9)"));
}

TEST_F(ControlRecords, GiveTheFirstOfJanuary1970AtTheCurrentTimeWithoutALastUpdate) {
  for (const char* lutm : {"no record", "null", "'1899-12-30'", "'1899-12-29 23:59:59'"}) {
    rig.Sql("delete from tstables");
    if (lutm != std::string("no record")) {
      rig.ControlRecord("tsmdm030", 2);
      rig.Sql(std::string("update tstables set lutm = ") + lutm);
    }
    rig.calls.Clear();
    const Object date = rig.inside.LastUpdateAsDateObject("tsmdm030");
    const auto calls = rig.calls.StartingWith({"date"});
    ASSERT_EQ(calls.size(), 3u) << lutm;
    EXPECT_THAT(calls[0], testing::EndsWith(".setDate(1)"));
    EXPECT_THAT(calls[1], testing::EndsWith(".setmonth(0)"));
    EXPECT_THAT(calls[2], testing::EndsWith(".setYear(70)"));
    ASSERT_TRUE(rig.inside.DateObjectToDate(date));
    EXPECT_EQ(rig.inside.ConvertedDate().ToText(), "1970-01-01 14:05:09") << lutm;  // the scripted ERP's time of day
  }
}

TEST_F(ControlRecords, CountATimeJustAfterTheZeroDateAsALastUpdate) {
  rig.ControlRecord("tsmdm030", 2, "1899-12-30 00:00:01");
  rig.inside.LastUpdateAsDateObject("tsmdm030");
  EXPECT_THAT(rig.calls.Lines(), testing::Contains("date1.setYear(-1)"));
}

// A quote in the table code breaks every query, so each routine shows its own failure.
struct Failure {
  const char* source;
  const char* description;
  std::function<void(DataCopyInside&)> routine;
};

TEST_F(ControlRecords, FailWithTheirOwnTextsAndTheTrappedNumber) {
  const Failure failures[] = {
      {"Data Copy In Progress", "Checking of whether Data Copy is in Progress for table o'clock Failed",
       [](DataCopyInside& inside) { inside.IsCopyInProgress("o'clock"); }},
      {"Set Data Copy In Progress", "Setting Data Copy in Progress flag for table o'clock Failed",
       [](DataCopyInside& inside) { inside.SetCopyInProgress("o'clock"); }},
      {"ReadSyncMethod", "Reading the synchronization Method for table o'clock Failed",
       [](DataCopyInside& inside) { inside.ReadSyncMethod("o'clock"); }},
      {"ReleaseCopyInProgress", "Release of Data copy in Progress flag for table o'clock Failed",
       [](DataCopyInside& inside) { inside.ReleaseCopyInProgress("o'clock"); }},
  };
  for (const Failure& failure : failures) {
    rig.files.texts.clear();
    const Error error = Raised([&] { failure.routine(rig.inside); });
    EXPECT_EQ(error.Number(), errors::kCommand) << failure.source;
    EXPECT_EQ(error.Source(), failure.source);
    EXPECT_EQ(error.Description(), failure.description);
    ASSERT_NE(error.Cause(), nullptr) << failure.source;
    EXPECT_EQ(error.Cause()->Number(), errors::kCommand) << failure.source;
    // The log has the trapped error, not the one that is raised.
    EXPECT_THAT(rig.files.texts["C:\\log\\tsmdm030.log"], HasSubstr(error.Cause()->Description())) << failure.source;
    EXPECT_THAT(rig.files.texts["C:\\log\\tsmdm030.log"], testing::Not(HasSubstr(failure.description)));
  }
  EXPECT_THAT(Records(), ElementsAre());
}

TEST_F(ControlRecords, LeaveTheRecordSetClosedAndNothingHalfWrittenAfterAFailure) {
  rig.Sql("alter table tstables drop column reqd");
  Connect();
  const Error error = Raised([&] { rig.inside.SetCopyInProgress("tsmdm030"); });
  EXPECT_EQ(error.Number(), errors::kNoSuchColumn);
  EXPECT_THAT(DescribeChain(error), HasSubstr("reqd"));
  EXPECT_THAT(rig.calls.Lines(), testing::Contains("rs3.CancelUpdate"));
  EXPECT_EQ(rig.calls.Lines().back(), "rs3.Close");
  EXPECT_THAT(rig.Rows("tstables", {"TableName"}), ElementsAre());
}

TEST_F(ControlRecords, LogAndReportAFailedWriteOfTheLastUpdateTimeAndRaiseNothing) {
  rig.Sql("alter table tstables drop column lutm");
  Connect();
  rig.inside.WriteLastUpdateTime("tsmdm030", DateTime::FromDate(2027, 1, 1));
  EXPECT_THAT(rig.files.texts["C:\\log\\tsmdm030.log"], HasSubstr("lutm"));
  ASSERT_EQ(rig.failures.chains.size(), 1u);
  EXPECT_THAT(rig.failures.chains[0],
              testing::StartsWith("error 3265, clsDataCopy: The last update time of table tsmdm030 was not "
                                  "written. [what to do: correct the cause; the next copy by change then reads the "
                                  "changes since the old time again]\n  because of error 3265, "));
  EXPECT_EQ(rig.declarations.statusWhenFinished, ExitStatus::StartUpFailed);
  EXPECT_EQ(rig.calls.Lines().back(), "rs3.Close");
  EXPECT_THAT(rig.Rows("tstables", {"TableName"}), ElementsAre());
}

TEST_F(ControlRecords, PassTheFailureOfReadingTheLastUpdateOn) {
  EXPECT_EQ(Raised([&] { rig.inside.LastUpdateAsDateObject("o'clock"); }).Number(), errors::kCommand);
  EXPECT_TRUE(rig.files.texts.empty());
}

TEST_F(ControlRecords, NeedAConnection) {
  CopyRig unconnected;
  unconnected.inside.LogFile() = "C:\\log\\tsmdm030.log";
  const Error error = Raised([&] { unconnected.inside.ReleaseCopyInProgress("tsmdm030"); });
  EXPECT_EQ(error.Number(), errors::kObjectNotSet);
  EXPECT_EQ(error.Source(), "ReleaseCopyInProgress");
  EXPECT_EQ(error.DetailOf("what to do"), "if the table is still in progress, release it with \"qmxadmin release\"");
}

// Check and set are two steps, so two runs that start at the same instant can both pass the check. This is the window.
TEST_F(ControlRecords, LetTwoRunsPassTheCheckWhenNeitherHasSetTheFlag) {
  clsDataCopy other(rig.platform, rig.declarations, rig.events);
  DataCopyInside inside{other};
  inside.LogFile() = "C:\\log\\tsmdm030.log";
  inside.Connect(rig.ConnectionText());
  EXPECT_FALSE(rig.inside.IsCopyInProgress("tsmdm030"));
  EXPECT_FALSE(inside.IsCopyInProgress("tsmdm030"));
  rig.inside.SetCopyInProgress("tsmdm030");
  inside.SetCopyInProgress("tsmdm030");
  EXPECT_EQ(rig.InUse("tsmdm030"), "1");
  EXPECT_TRUE(inside.IsCopyInProgress("tsmdm030"));
}

}  // namespace
}  // namespace qmx::test
