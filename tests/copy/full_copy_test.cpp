// The full copy, told on service types: the order of everything, the empty listing, no listing, the failures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/copy/service_type.h"
#include "tests/support/copy_rig.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::vector<std::string> kColumns = {"cstp", "dsca", "prod", "ract"};

// Everything between the start event and the release of the table.
std::vector<std::string> CallsOfTheCopy(const CallLog& calls) {
  std::vector<std::string> lines;
  bool inside = false;
  for (const std::string& line : calls.Lines()) {
    if (inside && line.ends_with("from tstables where tablename = 'tsmdm030'\" 1 3 1") && line.starts_with("rs6"))
      break;
    if (inside) lines.push_back(line);
    if (line.starts_with("event Started")) inside = true;
  }
  return lines;
}

TEST(FullCopy, CallsComponentsAndDatabaseInThisOrder) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 1);
  rig.erp.Lists(kServiceTypesManager,
                {ServiceType("A", "Repair", "P1", "DAY"), ServiceType("B", "Inspection", "P2", "NIGHT")});
  rig.Run("tsmdm030");
  EXPECT_THAT(CallsOfTheCopy(rig.calls),
              ElementsAre("create ServiceTypes.ServiceTypesManager",                                 //
                          "manager.initialize(\"Orvan, main\")",                                     //
                          "manager.List(\"\", \"ZZZ\")",                                             //
                          "listing.hasMoreElements()",                                               //
                          "connection.CommandTimeout 150",                                           //
                          "connection.Execute DELETE FROM tsmdm030 WHERE 1=1",                       //
                          "rs1.Open \"tsmdm030\" 1 3 2",                                             //
                          "listing.hasMoreElements()", "listing.nextElement()",                      //
                          "rs1.AddNew",                                                              //
                          "listed1.getServiceType()", "rs1.cstp = \"A\"",                            //
                          "listed1.getServiceTypeDescription()", "rs1.dsca = \"Repair\"",            //
                          "listed1.getServiceProcedure()", "rs1.prod = \"P1\"",                      //
                          "listed1.getavailabilityType()", "rs1.ract = \"DAY\"",                     //
                          "listing.hasMoreElements()", "listing.nextElement()",                      //
                          "rs1.AddNew",                                                              //
                          "listed2.getServiceType()", "rs1.cstp = \"B\"",                            //
                          "listed2.getServiceTypeDescription()", "rs1.dsca = \"Inspection\"",        //
                          "listed2.getServiceProcedure()", "rs1.prod = \"P2\"",                      //
                          "listed2.getavailabilityType()", "rs1.ract = \"NIGHT\"",                   //
                          "listing.hasMoreElements()",                                               //
                          "rs1.Update",                                                              //
                          "rs5.Open \"select * from tstables where tablename = 'tsmdm030'\" 1 3 1",  //
                          "rs5.lutm = 2026-11-20 14:05:09", "rs5.Update", "rs5.Close",               //
                          "rs1.Close",                                                               //
                          "log \"Date-Time :2026-11-20 : 14:05:09\"",                                //
                          "log \"Table : tsmdm030 - 2 records Inserted\"",                           //
                          "manager.Close()"));
  EXPECT_THAT(rig.Rows("tsmdm030", kColumns),
              ElementsAre("\"A\", \"Repair\", \"P1\", \"DAY\"", "\"B\", \"Inspection\", \"P2\", \"NIGHT\""));
}

TEST(FullCopy, ReplacesTheLocalRows) {
  CopyRig rig;
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('A', 'old'), ('GONE', 'old')");
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A", "new")});
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp", "dsca"}), ElementsAre("\"A\", \"new\""));
}

TEST(FullCopy, TakesTheMomentAfterDeleteAndOpenAsTheNewLastUpdateTime) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 1, "2026-01-01");
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.clock.step = 1;
  rig.Run("tsmdm030");
  // Readings: 09 the start event, 10 the first stamp, 11 the stamp that is kept.
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-20 14:05:11");
}

TEST(FullCopy, LeavesTheLocalRowsAloneWhenTheErpListsNone) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 1, "2026-01-01");
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('A', 'kept')");
  rig.erp.Lists(kServiceTypesManager, {});
  rig.Run("tsmdm030");
  EXPECT_THAT(CallsOfTheCopy(rig.calls),
              ElementsAre("create ServiceTypes.ServiceTypesManager", "manager.initialize(\"Orvan, main\")",
                          "manager.List(\"\", \"ZZZ\")", "listing.hasMoreElements()", "rs1.Open \"tsmdm030\" 1 3 2",
                          "listing.hasMoreElements()", "rs1.Update",
                          "rs5.Open \"select * from tstables where tablename = 'tsmdm030'\" 1 3 1",
                          "rs5.lutm = 2026-11-20 14:05:09", "rs5.Update", "rs5.Close", "rs1.Close",
                          "log \"Date-Time :2026-11-20 : 14:05:09\"", "log \"Table : tsmdm030 - 0 records Inserted\"",
                          "manager.Close()"));
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp", "dsca"}), ElementsAre("\"A\", \"kept\""));
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-20 14:05:09");
}

TEST(FullCopy, OnlyClosesTheManagerWhenTheListingIsNoObject) {
  CopyRig rig;
  rig.ControlRecord("tsmdm030", 1, "2026-01-01");
  rig.Sql("insert into tsmdm030 (cstp) values ('A')");
  rig.erp.ListsNoObject(kServiceTypesManager);
  rig.Run("tsmdm030");
  EXPECT_THAT(rig.calls.StartingWith({"create", "manager", "listing", "rs1", "connection.Execute", "log"}),
              ElementsAre("create ServiceTypes.ServiceTypesManager", "manager.initialize(\"Orvan, main\")",
                          "manager.List(\"\", \"ZZZ\")", "manager.Close()"));
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp"}), ElementsAre("\"A\""));
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-01-01");
  EXPECT_EQ(rig.CopyLog("tsmdm030"), "");
  EXPECT_EQ(rig.Events()[1], "event Complete 2026-11-20 14:05:09, \"tsmdm030\", 0, 0, 0");
}

TEST(FullCopy, IsOneOfTwoThingsThatADispatcherDoesAndNothingIsTheThird) {
  for (const int other : {0, 3, -1, 100}) {
    const auto syncMethod = static_cast<std::int16_t>(other);
    CopyRig rig;
    rig.ControlRecord("tsmdm030", syncMethod, "2026-01-01");
    rig.inside.Connect(rig.ConnectionText());
    rig.calls.Clear();
    rig.inside.CopyServiceTypes("tsmdm030", "Orvan", syncMethod);
    EXPECT_THAT(rig.calls.Lines(), IsEmpty()) << syncMethod;
    EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-01-01");
  }
}

TEST(FullCopy, CountsItsOwnInsertedRowsAndLeavesTheOtherCountsAsTheyAre) {
  CopyRig rig;
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.inside.LogFile() = "C:\\log\\tsmdm030.log";
  rig.inside.Connect(rig.ConnectionText());
  rig.inside.InsertCount() = 7;
  rig.inside.UpdateCount() = 8;
  rig.inside.DeleteCount() = 9;
  rig.inside.CopyServiceTypes("tsmdm030", "Orvan", kFullCopy);
  EXPECT_EQ(rig.inside.InsertCount(), 1);
  EXPECT_EQ(rig.inside.UpdateCount(), 8);
  EXPECT_EQ(rig.inside.DeleteCount(), 9);
  EXPECT_EQ(rig.CopyLog("tsmdm030"),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Table : tsmdm030 - 1 records Inserted\"\r\n");
}

// An engine on its own, so that the error itself can be seen.
class FailingFullCopy : public testing::Test {
 protected:
  FailingFullCopy() {
    rig.ControlRecord("tsmdm030", 1, "2026-01-01");
    rig.Sql("insert into tsmdm030 (cstp) values ('OLD')");
    rig.inside.LogFile() = "C:\\log\\tsmdm030.log";
    rig.inside.Connect(rig.ConnectionText());
    rig.calls.Clear();
  }
  Error Failure() {
    return Raised([&] { rig.inside.CopyServiceTypes("tsmdm030", "Orvan", kFullCopy); });
  }
  void ExpectTheTablesTexts(const Error& error) {
    EXPECT_EQ(error.Source(), "Copy Service Types");
    EXPECT_EQ(error.Description(), " Copy of Service Types from Orvan to Local DB failed");
    EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-01-01");
    EXPECT_EQ(rig.CopyLog("tsmdm030"), "");  // the driver logs the error, not the copy
    EXPECT_EQ(rig.inside.LocalRecordSet().State(), kStateClosed);
  }
  CopyRig rig;
};

TEST_F(FailingFullCopy, KeepsTheRowsThatWereAddedAndNotTheHalfFilledOne) {
  Getters halfFilled = ServiceType("C", "third");
  halfFilled.insert_or_assign("getServiceProcedure", Error(500, "Orvan", "The link was lost."));
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A", "first"), ServiceType("B", "second"), halfFilled});
  const Error error = Failure();
  EXPECT_EQ(error.Number(), 600);
  ExpectTheTablesTexts(error);
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp", "dsca"}), ElementsAre("\"A\", \"first\"", "\"B\", \"second\""));
  EXPECT_EQ(rig.inside.InsertCount(), 2);
  EXPECT_THAT(DescribeChain(error),
              HasSubstr("because of error 500, Orvan: The link was lost. "
                        "[column: prod; member: getServiceProcedure; table: tsmdm030; key: cstp='C']"));
  EXPECT_THAT(rig.calls.StartingWith({"rs1.Cancel", "rs1.Close", "manager.Close"}),
              ElementsAre("rs1.CancelUpdate", "rs1.Close", "manager.Close()"));
}

TEST_F(FailingFullCopy, ClosesTheManagerWhenTheListingFails) {
  rig.erp.ListsBy(kServiceTypesManager,
                  [](auto) -> std::optional<std::vector<Getters>> { throw Error(77, "Orvan", "No licence."); });
  const Error error = Failure();
  EXPECT_EQ(error.Number(), 177);
  ExpectTheTablesTexts(error);
  EXPECT_EQ(rig.calls.Lines().back(), "manager.Close()");
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp"}), ElementsAre("\"OLD\""));
}

TEST_F(FailingFullCopy, KeepsItsTextsWhenThereIsNoManagerToClose) {
  const Error error = Failure();  // no component serves the manager's ProgID
  EXPECT_EQ(error.Number(), 529);
  ExpectTheTablesTexts(error);
  EXPECT_THAT(DescribeChain(error), HasSubstr("because of error 429, ScriptedErp: Cannot create object "
                                              "ServiceTypes.ServiceTypesManager. [progid: ServiceTypes.ServiceTypesM"));
}

TEST_F(FailingFullCopy, KeepsTheTablesTextsWhenTheManagersCloseFailsInTheTrap) {
  rig.erp.Serves(kServiceTypesManager, [&] {
    const auto manager = rig.erp.Make("manager");
    manager->Takes("initialize", 1).On("List", 2, [](auto) -> Variant { throw Error(77, "Orvan", "No licence."); });
    manager->On("Close", 0, [](auto) -> Variant { throw Error(78, "Orvan", "The server is gone."); });
    return Object(manager);
  });
  const Error error = Failure();
  EXPECT_EQ(error.Number(), 177);
  ExpectTheTablesTexts(error);
  EXPECT_EQ(DescribeChain(error),
            "error 177, Copy Service Types:  Copy of Service Types from Orvan to Local DB failed\n"
            "  because of error 77, Orvan: No licence. [table: tsmdm030]\n"
            "  because of error 78, Orvan: The server is gone.");
}

// A row waits to be sent with others when the ERP fails, and is refused when the record set is closed.
TEST_F(FailingFullCopy, KeepsItsTextsAndTheRefusedRowWhenARowThatWaitedIsRefused) {
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A"),
                                       ServiceType("B"),
                                       ServiceType("C"),
                                       ServiceType("B"),
                                       {{"getServiceType", Error(500, "Orvan", "The link was lost.")}}});
  Error error = Failure();
  // A machine that stood still for 50 ms lets no row wait.
  for (int tries = 0; error.Number() == errors::kIntegrity + 100 && tries < 50; ++tries) error = Failure();
  EXPECT_EQ(error.Number(), 600);
  ExpectTheTablesTexts(error);
  EXPECT_THAT(DescribeChain(error),
              AllOf(HasSubstr("because of error 500, Orvan: The link was lost."),
                    HasSubstr("because of error -2147217873, "), HasSubstr("table: tsmdm030; key: cstp='B'")));
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp"}), ElementsAre("\"A\"", "\"B\"", "\"C\""));
  EXPECT_EQ(rig.calls.Lines().back(), "manager.Close()");
}

TEST_F(FailingFullCopy, TakesAFailedCloseAfterTheCopyForAFailedCopy) {
  rig.erp.Serves(kServiceTypesManager, [&] {
    const auto manager = rig.erp.Make("manager");
    const auto closes = std::make_shared<int>(0);
    manager->Takes("initialize", 1).Gives("List", Object());
    manager->On("List", 2, [](auto) { return Variant(); });
    manager->On("Close", 0, [closes](auto) -> Variant {
      if (++*closes == 1) throw Error(78, "Orvan", "Busy.");
      return {};
    });
    return Object(manager);
  });
  const Error error = Failure();
  EXPECT_EQ(error.Number(), 178);
  ExpectTheTablesTexts(error);
}

TEST_F(FailingFullCopy, AddsTwoHundredToTheDatabasesNumberWhenTheDeleteFails) {
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.Sql("drop table tsmdm030");
  const Error error = Failure();
  EXPECT_EQ(error.Number(), errors::kNoSuchTable + 200);
  EXPECT_EQ(error.Source(), "Copy Service Types");
  ASSERT_NE(error.Cause(), nullptr);
  EXPECT_EQ(error.Cause()->Number(), errors::kNoSuchTable + 100);
  EXPECT_EQ(error.Cause()->Source(), "Delete All Records");
  EXPECT_EQ(error.Cause()->Description(), "Deleting records from tsmdm030 failed");
  ASSERT_NE(error.Cause()->Cause(), nullptr);
  EXPECT_EQ(error.Cause()->Cause()->Number(), errors::kNoSuchTable);
}

TEST_F(FailingFullCopy, OverflowsItsCountAndKeepsTheRowsBefore) {
  rig.erp.ListsBy(kServiceTypesManager, [&](auto) {
    rig.inside.InsertCount() = std::numeric_limits<std::int32_t>::max() - 1;
    return std::vector<Getters>{ServiceType("A"), ServiceType("B"), ServiceType("C")};
  });
  const Error error = Failure();
  EXPECT_EQ(error.Number(), 106);
  ExpectTheTablesTexts(error);
  EXPECT_EQ(rig.inside.InsertCount(), std::numeric_limits<std::int32_t>::max());
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp"}), ElementsAre("\"A\""));
}

TEST_F(FailingFullCopy, FailsWhenTheCountLineCannotBeWrittenAndKeepsTheCopiedRows) {
  rig.erp.Lists(kServiceTypesManager, {ServiceType("A")});
  rig.files.failOn = "Open";
  const Error error = Failure();
  EXPECT_EQ(error.Number(), 161);
  EXPECT_EQ(error.Source(), "Copy Service Types");
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp"}), ElementsAre("\"A\""));
  EXPECT_EQ(rig.Lutm("tsmdm030"), "2026-11-20 14:05:09");  // written before the log
}

TEST_F(FailingFullCopy, OverflowsWhenAHundredCannotBeAddedToTheNumber) {
  rig.erp.ListsBy(kServiceTypesManager, [](auto) -> std::optional<std::vector<Getters>> {
    throw Error(std::numeric_limits<std::int32_t>::max() - 99, "Orvan", "A very large number.");
  });
  const Error error = Failure();
  EXPECT_EQ(error.Number(), errors::kOverflow);
  EXPECT_THAT(DescribeChain(error), HasSubstr("A very large number."));
}

TEST(Counts, GoUpToTheLargestNumberAndNoFurther) {
  std::int32_t count = std::numeric_limits<std::int32_t>::max() - 1;
  DataCopyInside::Increment(count);
  EXPECT_EQ(count, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(Raised([&] { DataCopyInside::Increment(count); }).Number(), errors::kOverflow);
  EXPECT_EQ(count, std::numeric_limits<std::int32_t>::max());
}

TEST(DeleteAllRecords, SetsTheTimeOutThatStaysForTheRun) {
  CopyRig rig;
  rig.inside.Connect(rig.ConnectionText());
  rig.Sql("insert into tsmdm030 (cstp) values ('A'), ('B')");
  rig.inside.DeleteAllRecords("tsmdm030");
  EXPECT_EQ(rig.inside.LocalConnection().CommandTimeout(), 150);
  EXPECT_THAT(rig.Rows("tsmdm030", {"cstp"}), IsEmpty());
}

}  // namespace
}  // namespace qmx::test
