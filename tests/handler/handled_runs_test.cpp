// Whole runs through the handler, on a real local database: what the scheduling server hears, in order, and how the
// run's exit status comes out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "handler/clsDataCopyHandler.h"
#include "tests/copy/service_type.h"
#include "tests/support/copy_rig.h"
#include "tests/support/logged_events.h"
#include "tests/support/raised.h"
#include "tests/support/scheduling_server.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HandledRun : public testing::Test {
 protected:
  HandledRun() {
    ServeSchedulingServer(rig_.erp);
    declarations_.HasStatusRequestId = true;
    declarations_.StatusRequestId = 17;
    declarations_.exitStatus = ExitStatus::StartUpFailed;  // so that a status that nobody sets shows
  }

  void Handle(const std::string& tableName) {
    clsDataCopyHandler handler(platform_, declarations_);
    handler.HandleDataCopy(rig_.ConnectionText(), "", tableName, CopyRig::kLogFolder, CopyRig::kComponent);
  }

  void RemakeControlTable(const std::string& inUse, const std::string& lutm) {
    rig_.Sql("drop table tstables");
    rig_.Sql("create table tstables (TableName varchar(30) primary key, " + inUse +
             ", freq smallint, reqd smallint, syme smallint, " + lutm + ")");
  }

  std::vector<std::string> Told() { return rig_.calls.StartingWith({"messages.", "requests.", "eventlog."}); }

  CopyRig rig_;
  LoggedEvents eventLog_{rig_.calls};
  Platform platform_{rig_.clock, rig_.files, eventLog_, rig_.erp, rig_.platform.database, rig_.failures};
  modDeclarations declarations_;
};

TEST_F(HandledRun, OfAnUnknownTableReportsAnEmptyDescriptionAndZeroCounts) {
  Handle("tsxyz999");
  EXPECT_THAT(Told(),
              ElementsAre("messages.writeToMessageBox(2026-11-20 14:05:09, \" (tsxyz999) : Data copy started\")",
                          "requests.UpdateStatusByTalbe(17, \"tsxyz999\", 10)",
                          "messages.writeToMessageBox(2026-11-20 14:05:09, \" (tsxyz999) : Copy result. "
                          "Added - 0;   Updated - 0;   Removed - 0\")",
                          "requests.UpdateStatusByTalbe(17, \"tsxyz999\", 40)"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::NothingToCopy);
}

TEST_F(HandledRun, WhoseTableCannotBeReleasedReportsItsCompletionAndEndsWithTwo) {
  rig_.erp.Lists("ServiceTypes.ServiceTypesManager", {});
  RemakeControlTable("in_use smallint check (in_use = 1)", "lutm datetime");
  Handle("tsmdm030");
  EXPECT_EQ(Told().back(), "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 40)");
  EXPECT_EQ(rig_.InUse("tsmdm030"), "1");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
}

TEST_F(HandledRun, WhoseLastUpdateTimeCannotBeWrittenReportsItsCompletionAndEndsWithTwo) {
  rig_.erp.Lists("ServiceTypes.ServiceTypesManager", {});
  RemakeControlTable("in_use smallint", "lutm datetime check (lutm is null)");
  Handle("tsmdm030");
  EXPECT_EQ(Told().back(), "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 40)");
  EXPECT_EQ(rig_.InUse("tsmdm030"), "0");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::StartUpFailed);
}

TEST_F(HandledRun, OfAServiceTypesTableReportsItsCounts) {
  rig_.Sql("insert into tsmdm030 (cstp) values ('A'), ('B'), ('C'), ('D'), ('E')");
  rig_.ControlRecord("tsmdm030", kOnlyChanged, "2026-11-19");
  rig_.erp.Lists(kServiceTypesManager, {});
  rig_.erp.Audits(kServiceTypesRecord,
                  {Deleted(DeletedServiceType("A")), Updated(ServiceType("B")), Updated(ServiceType("C")),
                   Inserted(ServiceType("X")), Inserted(ServiceType("Y")), Inserted(ServiceType("Z"))});
  Handle("tsmdm030");
  EXPECT_THAT(
      Told(),
      ElementsAre("messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Types (tsmdm030) : Data copy started\")",
                  "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 10)",
                  "messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Types (tsmdm030) : Copy "
                  "result. Added - 3;   Updated - 2;   Removed - 1\")",
                  "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 40)"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::Complete);
  EXPECT_EQ(declarations_.CurrentDatabaseName, "local");
}

TEST_F(HandledRun, OfATableInProgressReportsOnlyTheRefusal) {
  rig_.ControlRecord("tsmdm030", 1);
  rig_.Sql("update tstables set in_use = 1");
  Handle("tsmdm030");
  EXPECT_THAT(Told(), ElementsAre("messages.writeToMessageBox(2026-11-20 14:05:09, \" For Table tsmdm030 datacopy is "
                                  "already in progress\")",
                                  "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 30)"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::Refused);
}

TEST_F(HandledRun, ThatFailsReportsToTheEventLogAndTheServer) {
  Handle("tsmdm030");  // no ERP component serves it
  EXPECT_THAT(
      Told(),
      ElementsAre("messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Types (tsmdm030) : Data copy started\")",
                  "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 10)",
                  "eventlog.LogEvent(\"\r\nDatabase    : local\r\nTable       : tsmdm030\r\nDescription : DataCopy "
                  "Failed, see logfile 'C:\\log\\tsmdm030.log' for details\", 1)",
                  "messages.writeToMessageBox(2026-11-20 14:05:09, \"Service Types (tsmdm030) : Data copy FAILED\")",
                  "messages.WriteToAlertBox(2026-11-20 14:05:09, \" Data copy of Table tsmdm030 failed.\r\n"
                  "Error is -1 DataCopy Failed, see logfile 'C:\\log\\tsmdm030.log' for details\r\n"
                  "------------------------------------------------------\")",
                  "requests.UpdateStatusByTalbe(17, \"tsmdm030\", 20)"));
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::CopyFailed);
}

TEST_F(HandledRun, OfOneCalendarReportsItsStartTwice) {
  Handle("tcccp030=C1=C");  // no ERP component serves it, which comes out after both
  const std::string started =
      "messages.writeToMessageBox(2026-11-20 14:05:09, \"Calendars (tcccp030) : Data copy started\")";
  EXPECT_EQ(rig_.calls.Count(started), 2U);
  EXPECT_EQ(rig_.calls.Count("requests.UpdateStatusByTalbe(17, \"tcccp030\", 10)"), 2U);
}

TEST_F(HandledRun, WithoutServerCreatesNoObjectAndReportsOnlyToTheEventLog) {
  declarations_.ServerMessagesOff = true;
  declarations_.HasStatusRequestId = false;
  Handle("tsmdm030");
  EXPECT_THAT(rig_.calls.StartingWith({"create QMXServer20"}), IsEmpty());
  EXPECT_EQ(Told().size(), 1U);
  EXPECT_EQ(rig_.calls.StartingWith({"eventlog.LogEvent"}).size(), 1U);
}

TEST_F(HandledRun, WhoseStartCannotBeReportedFailsAsACopyAndReleasesTheTable) {
  rig_.erp.Serves("QMXServer20.clsMessHandler", [&] {
    const auto messages = rig_.erp.Make("messages");
    messages->On("writeToMessageBox", 2, [](ScriptedObject::Arguments arguments) -> Variant {
      if (arguments[1].Value().ToText().ends_with("started")) throw Error(4711, "Server", "The board is full.");
      return {};
    });
    messages->Takes("WriteToAlertBox", 2);
    return Object(messages);
  });
  Handle("tsmdm030");
  EXPECT_EQ(declarations_.exitStatus, ExitStatus::CopyFailed);
  EXPECT_EQ(rig_.InUse("tsmdm030"), "0");
  EXPECT_NE(rig_.CopyLog("tsmdm030").find("\"Server\",\"The board is full.\""), std::string::npos);
}

TEST_F(HandledRun, WhoseResultCannotBeReportedFailsAfterTheCopy) {
  rig_.erp.Serves("QMXServer20.ClientRequests", [&] {
    const auto requests = rig_.erp.Make("requests");
    requests->On("UpdateStatusByTalbe", 3, [](ScriptedObject::Arguments arguments) -> Variant {
      if (arguments[2].Value() == Variant(std::int16_t{40})) throw Error(4711, "Server", "No such request.");
      return {};
    });
    return Object(requests);
  });
  rig_.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  EXPECT_EQ(Raised([&] { Handle("tsmdm030"); }).Number(), 4711);
  EXPECT_THAT(rig_.Rows("tsmdm030", {"cstp"}), ElementsAre("\"A\""));
  EXPECT_EQ(rig_.Lutm("tsmdm030"), "2026-11-20 14:05:09");
  EXPECT_EQ(rig_.InUse("tsmdm030"), "0");
}

}  // namespace
}  // namespace qmx::test
