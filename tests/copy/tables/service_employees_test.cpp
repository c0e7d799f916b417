#include "tests/copy/tables/table_copy.h"

namespace qmx::test::service_employees {
namespace {

constexpr const char* kTable = "tsmdm140";
constexpr const char* kManager = "ServiceEmployees.ServiceEmployeesManager";
constexpr const char* kRecord = "ServiceEmployees.ServiceEmployees";
const std::vector<std::string> kColumns = {"emno", "dsca", "cwoc", "ccal", "frmn", "csar", "ccar", "ouser", "mpod"};

// As the audit reader gives it.
Getters AuditedEmployee(const std::string& number, const std::string& suffix, double overtime) {
  return {{"getserviceemployee", number},  {"getForeman", "F" + suffix},   {"getServiceArea", "A" + suffix},
          {"getServiceCar", "V" + suffix}, {"getLoginCode", "U" + suffix}, {"getMaximumOvertimePerDay", overtime}};
}

// As the listing gives it.
Getters Employee(const std::string& number, const std::string& suffix, double overtime) {
  Getters getters = AuditedEmployee(number, suffix, overtime);
  getters.insert({{"getServiceEmployeeName", "Name" + suffix},
                  {"getServiceCenter", "C" + suffix},
                  {"getCalendarCode", "K" + suffix}});
  return getters;
}

TEST(ServiceEmployees, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Employee("E1", "1", 1.5)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"E1\", \"Name1\", \"C1\", \"K1\", \"F1\", \"A1\", \"V1\", \"U1\", 1.5"));
  EXPECT_EQ(ColumnsWritten(rig.calls), "emno dsca cwoc ccal frmn csar ccar ouser mpod");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getserviceemployee getServiceEmployeeName getServiceCenter getCalendarCode getForeman getServiceArea "
            "getServiceCar getLoginCode getMaximumOvertimePerDay");
  EXPECT_THAT(
      ManagerCalls(rig.calls),
      ElementsAre("manager.initialize(\"Orvan, main\")",
                  "manager.List(\"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\")", "manager.Close()"));
}

TEST(ServiceEmployees, AreReadOnceMoreFromTheListingWhenTheyChange) {
  CopyRig rig;
  rig.Sql("insert into tsmdm140 (emno, dsca) values ('E2', 'old'), ('E3', 'old')");
  rig.erp.ListsBy(kManager, [](ScriptedObject::Arguments bounds) {
    const std::string key = bounds[0].Value().ToText();
    return std::vector<Getters>{Employee(key, key, 2.5)};
  });
  RunChanged(rig, kTable, kRecord,
             {Inserted(AuditedEmployee("E1", "a", 1.5)), Updated(AuditedEmployee("E2", "b", 1.5)),
              Deleted({{"getserviceemployee", "E3"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"E1\", \"NameE1\", \"CE1\", \"KE1\", \"FE1\", \"AE1\", \"VE1\", \"UE1\", 2.5",
                          "\"E2\", \"NameE2\", \"CE2\", \"KE2\", \"FE2\", \"AE2\", \"VE2\", \"UE2\", 2.5"));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"emno\" \"\" \"ZZZZZZ\"", "emno frmn csar ccar user mopd"));
}

TEST(ServiceEmployees, CallComponentsAndDatabaseInThisOrder) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Employee("E1", "1", 2.5)});
  RunChanged(rig, kTable, kRecord,
             {Inserted(AuditedEmployee("E1", "a", 1.5)), Deleted({{"getserviceemployee", "E3"}})});
  EXPECT_THAT(rig.calls.StartingWith({"manager", "listing", "listed", "status", "current", "rs1", "connection.Exec"}),
              ElementsAre("manager.initialize(\"Orvan, main\")",  //
                          "status.isDeleted(entry1)", "status.isUpdated(entry1)", "status.isInserted(entry1)",
                          "current1.getserviceemployee()",  //
                          "rs1.Open \"select * from tsmdm140 where emno='E1'\" 1 3 1", "rs1.AddNew",
                          "current1.getserviceemployee()",
                          "manager.List(\"E1\", \"E1\", \"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\")",
                          "listing.hasMoreElements()", "listing.nextElement()",  //
                          "listed1.getserviceemployee()", "rs1.emno = \"E1\"", "listed1.getServiceEmployeeName()",
                          "rs1.dsca = \"Name1\"", "listed1.getServiceCenter()", "rs1.cwoc = \"C1\"",
                          "listed1.getCalendarCode()", "rs1.ccal = \"K1\"", "listed1.getForeman()", "rs1.frmn = \"F1\"",
                          "listed1.getServiceArea()", "rs1.csar = \"A1\"", "listed1.getServiceCar()",
                          "rs1.ccar = \"V1\"", "listed1.getLoginCode()", "rs1.ouser = \"U1\"",
                          "listed1.getMaximumOvertimePerDay()", "rs1.mpod = 2.5",  //
                          "rs1.Update", "rs1.Close",                               //
                          "status.isDeleted(entry2)", "current2.getserviceemployee()",
                          "connection.Execute DELETE FROM tsmdm140 where emno='E3'"));
}

TEST(ServiceEmployees, KeepNameCenterAndCalendarWhenTheListingFindsNothing) {
  CopyRig rig;
  rig.Sql("insert into tsmdm140 (emno, dsca, cwoc, ccal, frmn) values ('E2', 'kept', 'kept', 'kept', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(AuditedEmployee("E1", "a", 1.5)), Updated(AuditedEmployee("E2", "b", 2.5))});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"E1\", null, null, null, \"Fa\", \"Aa\", \"Va\", \"Ua\", 1.5",
                          "\"E2\", \"kept\", \"kept\", \"kept\", \"Fb\", \"Ab\", \"Vb\", \"Ub\", 2.5"));
}

TEST(ServiceEmployees, FailWithTheSameTextsInFullAndByChange) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Employees:  Copy of Service Employees from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Employees:  Copy of Service Employees from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::service_employees
