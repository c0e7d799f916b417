// The changed copy, told on service types: the order of everything, what each kind of entry does, the failures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/copy/service_type.h"
#include "tests/support/copy_rig.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Calls and entries of one changed copy of service types, on an engine of its own.
class ChangedCopyOfServiceTypes : public testing::Test {
 protected:
  ChangedCopyOfServiceTypes() {
    rig.ControlRecord("tsmdm030", 2, "2026-11-19 08:00:00");
    rig.erp.Lists(kServiceTypesManager, {});
    rig.inside.LogFile() = "C:\\log\\tsmdm030.log";
    rig.inside.Connect(rig.ConnectionText());
    rig.calls.Clear();
  }
  void Copy(std::vector<AuditEntry> entries) {
    rig.erp.Audits(kServiceTypesRecord, std::move(entries));
    rig.inside.CopyServiceTypes("tsmdm030", "Orvan, main", kOnlyChanged);
  }
  std::vector<std::int32_t> Counts() {
    return {rig.inside.InsertCount(), rig.inside.UpdateCount(), rig.inside.DeleteCount()};
  }
  std::vector<std::string> Rows() { return rig.Rows("tsmdm030", {"cstp", "dsca"}); }
  CopyRig rig;
};

TEST_F(ChangedCopyOfServiceTypes, CallsComponentsAndDatabaseInThisOrder) {
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('B', 'old'), ('C', 'old')");
  Copy({Inserted(ServiceType("A", "Repair", "P1", "DAY")), Updated(ServiceType("B", "Inspection", "P2", "NIGHT")),
        Deleted(DeletedServiceType("C"))});
  EXPECT_THAT(
      rig.calls.Lines(),
      ElementsAre(
          "create ServiceTypes.ServiceTypesManager", "create ServiceTypes.ServiceTypes", "create audit.auditCriteria",
          "create audit.period", "create audit.Parameter", "create audit.AuditReader", "create audit.RecordStatus",  //
          "manager.initialize(\"Orvan, main\")", "recordClass.getClass()",                                           //
          "create java:java.util.Date",                                                                              //
          "rs2.Open \"select * from tstables where tablename = 'tsmdm030'\" 1 3 1",                                  //
          "rs2.Close",                                                                                               //
          "date1.setDate(19)", "date1.setmonth(10)", "date1.setYear(126)",                                           //
          "date1.setHours(8)", "date1.setMinutes(0)", "date1.setSeconds(0)",                                         //
          "create java:java.util.Date",                                                                              //
          "date2.setDate(20)", "date2.setmonth(10)", "date2.setYear(126)",                                           //
          "date2.setHours(14)", "date2.setMinutes(5)", "date2.setSeconds(9)",                                        //
          "period.setFrom(date1)", "period.setTo(date2)", "criteria.setPeriod(period)",
          "parameter1.setFieldName(\"cstp\")", "parameter1.setFrom(\"\")", "parameter1.setTo(\"ZZZ\")",
          "criteria.addParameter(parameter1)",  //
          "criteria.addOutputField(\"desc\")", "criteria.addOutputField(\"proc\")",
          "criteria.addOutputField(\"ract\")",                  //
          "reader.initialize(manager, recordClass, criteria)",  //
          // A is not here yet.
          "reader.hasMoreElements()", "reader.nextElement()", "entry1.getTuple()", "reader.getCurrentObject(tuple1)",
          "status.isDeleted(entry1)", "status.isUpdated(entry1)", "status.isInserted(entry1)",
          "current1.getServiceType()", "rs1.Open \"select * from tsmdm030 where cstp='A'\" 1 3 1", "rs1.AddNew",  //
          "current1.getServiceType()", "rs1.cstp = \"A\"",                                                        //
          "current1.getServiceTypeDescription()", "rs1.dsca = \"Repair\"",                                        //
          "current1.getServiceProcedure()", "rs1.prod = \"P1\"",                                                  //
          "current1.getavailabilityType()", "rs1.ract = \"DAY\"",                                                 //
          "rs1.Update", "rs1.Close",
          // B is.
          "reader.hasMoreElements()", "reader.nextElement()", "entry2.getTuple()", "reader.getCurrentObject(tuple2)",
          "status.isDeleted(entry2)", "status.isUpdated(entry2)", "status.isInserted(entry2)",
          "current2.getServiceType()",
          "rs1.Open \"select * from tsmdm030 where cstp='B'\" 1 3 1",           //
          "current2.getServiceType()", "rs1.cstp = \"B\"",                      //
          "current2.getServiceTypeDescription()", "rs1.dsca = \"Inspection\"",  //
          "current2.getServiceProcedure()", "rs1.prod = \"P2\"",                //
          "current2.getavailabilityType()", "rs1.ract = \"NIGHT\"",             //
          "rs1.Update", "rs1.Close",
          // C goes.
          "reader.hasMoreElements()", "reader.nextElement()", "entry3.getTuple()", "reader.getCurrentObject(tuple3)",
          "status.isDeleted(entry3)", "current3.getServiceType()",
          "connection.Execute DELETE FROM tsmdm030 where cstp='C'",  //
          "reader.hasMoreElements()",
          // The period's end becomes the last update time.
          "date2.getyear()", "date2.getMonth()", "date2.getyear()", "date2.getMonth()", "date2.getDate()",
          "date2.getHours()", "date2.getMinutes()", "date2.getSeconds()",
          "rs3.Open \"select * from tstables where tablename = 'tsmdm030'\" 1 3 1", "rs3.lutm = 2026-11-20 14:05:09",
          "rs3.Update", "rs3.Close", "log \"Date-Time :2026-11-20 : 14:05:09\"",
          "log \"Table : tsmdm030 - 1 records Inserted\"", "log \"Table : tsmdm030 - 1 records Updated\"",
          "log \"Table : tsmdm030 - 1 records Deleted\""));
  EXPECT_THAT(Rows(), ElementsAre("\"A\", \"Repair\"", "\"B\", \"Inspection\""));
}

TEST_F(ChangedCopyOfServiceTypes, LeavesTheManagerOpen) {
  Copy({});
  EXPECT_EQ(rig.calls.Count("manager.Close()"), 0u);
}

TEST_F(ChangedCopyOfServiceTypes, ReadsFromTheLastUpdateHoweverFarBackItIs) {
  rig.Sql("update tstables set lutm = '1975-06-30 23:59:58'");
  Copy({});
  EXPECT_THAT(rig.calls.StartingWith({"date1"}),
              ElementsAre("date1.setDate(30)", "date1.setmonth(5)", "date1.setYear(75)", "date1.setHours(23)",
                          "date1.setMinutes(59)", "date1.setSeconds(58)"));
}

TEST_F(ChangedCopyOfServiceTypes, ReportsAPeriodThatBeginsAfterItsEndAndGoesOn) {
  rig.Sql("update tstables set lutm = '2026-11-21 08:00:00'");
  Copy({Inserted(ServiceType("A", "Repair", "P1", "DAY"))});
  EXPECT_THAT(
      rig.failures.chains,
      ElementsAre("error 5, Changed copy: The last update time of tsmdm030, 2026-11-21 08:00:00, lies after the "
                  "clock's 2026-11-20 14:05:09, so the ERP is asked for a period that ends before it begins. "
                  "Check the clock, then copy the table in full: changes may be missing."));
  EXPECT_THAT(Rows(), ElementsAre("\"A\", \"Repair\""));
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-20 14:05:09");
}

TEST_F(ChangedCopyOfServiceTypes, ReportsNothingOfAPeriodThatEndsAsItBegins) {
  rig.Sql("update tstables set lutm = '2026-11-20 14:05:09'");
  Copy({});
  EXPECT_THAT(rig.failures.chains, IsEmpty());
}

TEST_F(ChangedCopyOfServiceTypes, TakesThePeriodsEndAsTheLastUpdateTimeNotTheCopysEnd) {
  rig.clock.step = 1;
  Copy({});
  // Readings: 09 the date; 10, 11, 12 the hour, the minute and the second of the period's end.
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-20 14:05:12");
}

TEST_F(ChangedCopyOfServiceTypes, LetsTheLocalRowsDecideBetweenInsertAndUpdate) {
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('HERE', 'old'), ('HERE TOO', 'old')");
  Copy({Inserted(ServiceType("HERE", "new")), Inserted(ServiceType("HERE TOO", "new")),
        Updated(ServiceType("MISSING", "new"))});
  EXPECT_THAT(Rows(), ElementsAre("\"HERE\", \"new\"", "\"HERE TOO\", \"new\"", "\"MISSING\", \"new\""));
  EXPECT_THAT(Counts(), ElementsAre(1, 2, 0));
}

TEST_F(ChangedCopyOfServiceTypes, HandlesAnEntryFlaggedBothWaysOnce) {
  Copy({{.updated = true, .inserted = true, .current = ServiceType("A", "once")}});
  EXPECT_THAT(Rows(), ElementsAre("\"A\", \"once\""));
  EXPECT_THAT(Counts(), ElementsAre(1, 0, 0));
}

TEST_F(ChangedCopyOfServiceTypes, TakesADeletionBeforeTheOtherFlags) {
  rig.Sql("insert into tsmdm030 (cstp) values ('A')");
  Copy({{.deleted = true, .updated = true, .inserted = true, .current = DeletedServiceType("A")}});
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_THAT(Counts(), ElementsAre(0, 0, 1));
  EXPECT_EQ(rig.calls.Count("status.isUpdated(entry1)"), 0u);
}

TEST_F(ChangedCopyOfServiceTypes, SkipsAnEntryThatIsNeitherDeletedUpdatedNorInserted) {
  Copy({{.current = ServiceType("A", "nothing")}});
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_THAT(Counts(), ElementsAre(0, 0, 0));
  EXPECT_EQ(rig.CopyLog("tsmdm030"),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Table : tsmdm030 - 0 records Inserted\"\r\n");
}

TEST_F(ChangedCopyOfServiceTypes, CountsADeletionOfAMissingRow) {
  Copy({Deleted(DeletedServiceType("GONE"))});
  EXPECT_THAT(Counts(), ElementsAre(0, 0, 1));
  EXPECT_EQ(rig.calls.Count("connection.Execute DELETE FROM tsmdm030 where cstp='GONE'"), 1u);
}

TEST_F(ChangedCopyOfServiceTypes, AppliesSeveralEntriesOfOneKeyInTheirOrder) {
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('A', 'old'), ('B', 'old')");
  Copy({Deleted(DeletedServiceType("A")), Inserted(ServiceType("A", "back")), Updated(ServiceType("B", "first")),
        Updated(ServiceType("B", "last")), Inserted(ServiceType("C", "short")), Deleted(DeletedServiceType("C"))});
  EXPECT_THAT(Rows(), ElementsAre("\"A\", \"back\"", "\"B\", \"last\""));
  EXPECT_THAT(Counts(), ElementsAre(2, 2, 2));
}

TEST_F(ChangedCopyOfServiceTypes, WritesNoLastUpdateTimeWhenThePeriodsEndIsNoDate) {
  // A date object that ignores its setters and stays in January 1900.
  rig.erp.Serves("java:java.util.Date", [&] {
    const auto date = rig.erp.Make("date");
    for (const char* setter : {"setDate", "setmonth", "setYear", "setHours", "setMinutes", "setSeconds"}) {
      date->Takes(setter, 1);
    }
    date->Gives("getyear", 0).Gives("getMonth", 0);
    return Object(date);
  });
  Copy({Inserted(ServiceType("A"))});
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-19 08:00:00");
  EXPECT_THAT(rig.CopyLog("tsmdm030"), HasSubstr("Table : tsmdm030 - 1 records Inserted"));
}

TEST_F(ChangedCopyOfServiceTypes, StartsItsCountsAnew) {
  rig.inside.InsertCount() = rig.inside.UpdateCount() = rig.inside.DeleteCount() = 9;
  Copy({});
  EXPECT_THAT(Counts(), ElementsAre(0, 0, 0));
}

class FailingChangedCopy : public ChangedCopyOfServiceTypes {
 protected:
  // The error of a changed copy; what every failure has in common is checked here.
  Error Failure(std::vector<AuditEntry> entries) {
    const Error error = Raised([&] { Copy(std::move(entries)); });
    EXPECT_EQ(error.Source(), "Copy Service Types - Only Changed");
    EXPECT_EQ(error.Description(), " Copy of Service Types from Orvan to Local DB failed");
    EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-19 08:00:00");
    EXPECT_EQ(rig.calls.Count("manager.Close()"), 0u);
    return error;
  }
};

TEST_F(FailingChangedCopy, KeepsWhatWasAppliedLogsTheTrappedErrorAndRaisesItsOwn) {
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('B', 'old')");
  rig.erp.auditFailure = Error(300, "Audit", "The trail is broken.");
  const Error error = Failure({Inserted(ServiceType("A", "new")), Deleted(DeletedServiceType("B"))});
  EXPECT_EQ(error.Number(), 400);
  EXPECT_THAT(Rows(), ElementsAre("\"A\", \"new\""));
  EXPECT_THAT(Counts(), ElementsAre(1, 0, 1));
  EXPECT_EQ(rig.CopyLog("tsmdm030"), "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Audit\",\"The trail is broken.\"\r\n");
  EXPECT_THAT(DescribeChain(error), HasSubstr("because of error 300, Audit: The trail is broken."));
}

TEST_F(FailingChangedCopy, LeavesTheRecordSetOpenAndTheHalfFilledRowUnsaved) {
  Getters halfFilled = ServiceType("A", "half");
  halfFilled.erase("getServiceProcedure");
  const Error error = Failure({Inserted(halfFilled)});
  EXPECT_EQ(error.Number(), 538);
  EXPECT_EQ(rig.inside.LocalRecordSet().State(), kStateOpen);
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_THAT(
      DescribeChain(error),
      HasSubstr("[member: getServiceProcedure; column: prod; table: tsmdm030; audit entry: 1; key: where cstp='A']"));
}

TEST_F(FailingChangedCopy, LetsTheRunEndAsUsualWithItsRecordSetOpen) {
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('A', 'old')");
  Getters halfFilled = ServiceType("A", "half");
  halfFilled.erase("getServiceProcedure");
  rig.erp.Audits(kServiceTypesRecord, {Updated(halfFilled)});
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tsmdm030\"",
                                        "event Error 2026-11-20 14:05:09, \"tsmdm030\", -1, \"DataCopy Failed, see "
                                        "logfile 'C:\\log\\tsmdm030.log' for details\"",
                                        "event done"));
  EXPECT_EQ(rig.InUse("tsmdm030"), "0");
  EXPECT_THAT(Rows(), ElementsAre("\"A\", \"old\""));
  EXPECT_EQ(rig.CopyLog("tsmdm030"),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"current1\",\"There is no member getServiceProcedure.\"\r\n"
            "\"Copy Service Types - Only Changed\",\" Copy of Service Types from Orvan to Local DB failed\"\r\n");
}

TEST_F(FailingChangedCopy, EndsOnAKeyWithAQuote) {
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('A', 'kept'), ('B', 'kept')");
  const Error update = Failure({Updated(ServiceType("O'NEIL"))});
  EXPECT_EQ(update.Number(), errors::kCommand + 100);
  EXPECT_THAT(DescribeChain(update), HasSubstr("O'NEIL"));
  EXPECT_THAT(DescribeChain(update), HasSubstr("tsmdm030"));

  // One that would close the quote neatly and reach every row.
  const Error removal = Failure({Deleted(DeletedServiceType("' or 'x'='x"))});
  EXPECT_EQ(removal.Number(), errors::kCommand + 100);
  EXPECT_THAT(Rows(), ElementsAre("\"A\", \"kept\"", "\"B\", \"kept\""));
}

TEST_F(FailingChangedCopy, KeepsItsTextsWhenAComponentIsMissing) {
  const Error error = Raised([&] { rig.inside.CopyServiceTypes("tsmdm030", "Orvan", kOnlyChanged); });
  EXPECT_EQ(error.Number(), 529);
  EXPECT_EQ(error.Source(), "Copy Service Types - Only Changed");
  EXPECT_THAT(DescribeChain(error), HasSubstr("progid: ServiceTypes.ServiceTypes"));
}

TEST_F(FailingChangedCopy, OverflowsEveryCount) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  struct Count {
    const char* name;
    std::int32_t& (DataCopyInside::*of)();
    AuditEntry entry;
  };
  const Count counts[] = {{"inserted", &DataCopyInside::InsertCount, Inserted(ServiceType("NEW"))},
                          {"updated", &DataCopyInside::UpdateCount, Updated(ServiceType("HERE"))},
                          {"deleted", &DataCopyInside::DeleteCount, Deleted(DeletedServiceType("HERE"))}};
  for (const Count& full : counts) {
    SCOPED_TRACE(full.name);
    CopyRig fresh;
    fresh.ControlRecord("tsmdm030", 2, "2026-11-19 08:00:00");
    fresh.Sql("insert into tsmdm030 (cstp) values ('HERE')");
    fresh.inside.LogFile() = "C:\\log\\tsmdm030.log";
    fresh.inside.Connect(fresh.ConnectionText());
    fresh.erp.Lists(kServiceTypesManager, {});
    fresh.erp.Audits(kServiceTypesRecord, {full.entry});
    // The counts are set to 0 at the start, so one is preset when the record class is asked for.
    fresh.erp.Serves(kServiceTypesRecord, [&] {
      (fresh.inside.*full.of)() = kMost;
      const auto record = fresh.erp.Make("recordClass");
      record->Gives("getClass", "class");
      return Object(record);
    });
    const Error error = Raised([&] { fresh.inside.CopyServiceTypes("tsmdm030", "Orvan", kOnlyChanged); });
    EXPECT_EQ(error.Number(), 106);
    EXPECT_EQ(error.Source(), "Copy Service Types - Only Changed");
    for (const Count& count : counts) {
      EXPECT_EQ((fresh.inside.*count.of)(), &count == &full ? kMost : 0) << count.name;
    }
  }
}

}  // namespace
}  // namespace qmx::test
