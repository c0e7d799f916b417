#include "tests/copy/tables/table_copy.h"

namespace qmx::test::service_types {
namespace {

constexpr const char* kTable = "tsmdm030";
constexpr const char* kManager = "ServiceTypes.ServiceTypesManager";
constexpr const char* kRecord = "ServiceTypes.ServiceTypes";

Getters ServiceType(const std::string& code, const std::string& suffix) {
  return {{"getServiceType", code},
          {"getServiceTypeDescription", "Repair" + suffix},
          {"getServiceProcedure", "P" + suffix},
          {"getavailabilityType", "D" + suffix}};
}

TEST(ServiceTypes, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {ServiceType("A", "1")});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, {"cstp", "dsca", "prod", "ract"}), ElementsAre("\"A\", \"Repair1\", \"P1\", \"D1\""));
  EXPECT_EQ(ColumnsWritten(rig.calls), "cstp dsca prod ract");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getServiceType getServiceTypeDescription getServiceProcedure getavailabilityType");
  EXPECT_THAT(ManagerCalls(rig.calls),
              ElementsAre("manager.initialize(\"Orvan, main\")", "manager.List(\"\", \"ZZZ\")", "manager.Close()"));
}

TEST(ServiceTypes, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tsmdm030 (cstp, dsca) values ('B', 'old'), ('C', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(ServiceType("A", "1")), Updated(ServiceType("B", "2")), Deleted({{"getServiceType", "C"}})});
  EXPECT_THAT(rig.Rows(kTable, {"cstp", "dsca", "prod", "ract"}),
              ElementsAre("\"A\", \"Repair1\", \"P1\", \"D1\"", "\"B\", \"Repair2\", \"P2\", \"D2\""));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"cstp\" \"\" \"ZZZ\"", "desc proc ract"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tsmdm030 where cstp='A'", "select * from tsmdm030 where cstp='B'",
                          "DELETE FROM tsmdm030 where cstp='C'"));
}

TEST(ServiceTypes, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Types:  Copy of Service Types from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Types - Only Changed:  Copy of Service Types from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::service_types
