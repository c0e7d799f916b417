#include "tests/copy/tables/table_copy.h"

namespace qmx::test::service_areas {
namespace {

constexpr const char* kTable = "tsmdm105";
constexpr const char* kManager = "ServiceAreas.ServiceAreasManager";
constexpr const char* kRecord = "ServiceAreas.ServiceAreas";
const std::vector<std::string> kColumns = {"csar", "dsca", "artp", "cmsa", "cwoc", "cwar",
                                           "trti", "dist", "ccha", "CCur", "clrt"};

Getters ServiceArea(const std::string& code, const std::string& suffix, double factor) {
  return {{"getServiceArea", code},
          {"getServiceAreaDescription", "Area" + suffix},
          {"getServiceAreaType", "T" + suffix},
          {"getMainServiceArea", "M" + suffix},
          {"getServiceCenter", "C" + suffix},
          {"getWarehouse", "W" + suffix},
          {"getAverageTravelingTime", 1.5 * factor},
          {"getAverageTravelingDistance", 22.25 * factor},
          {"getCallOutCharge", 45.125 * factor},
          {"getCurrency", "EU" + suffix},
          {"getLaborRate", 30.5 * factor}};
}

TEST(ServiceAreas, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {ServiceArea("A1", "1", 1)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"A1\", \"Area1\", \"T1\", \"M1\", \"C1\", \"W1\", 1.5, 22.25, 45.125, \"EU1\", 30.5"));
  EXPECT_EQ(ColumnsWritten(rig.calls), "csar dsca artp cmsa cwoc cwar trti dist ccha CCur clrt");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getServiceArea getServiceAreaDescription getServiceAreaType getMainServiceArea getServiceCenter "
            "getWarehouse getAverageTravelingTime getAverageTravelingDistance getCallOutCharge getCurrency "
            "getLaborRate");
  EXPECT_THAT(ManagerCalls(rig.calls),
              ElementsAre("manager.initialize(\"Orvan, main\")", "manager.List(\"\", \"ZZZZZZZ\")", "manager.Close()"));
}

TEST(ServiceAreas, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tsmdm105 (csar, dsca) values ('A2', 'old'), ('A3', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(
      rig, kTable, kRecord,
      {Inserted(ServiceArea("A1", "1", 1)), Updated(ServiceArea("A2", "2", 3)), Deleted({{"getServiceArea", "A3"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"A1\", \"Area1\", \"T1\", \"M1\", \"C1\", \"W1\", 1.5, 22.25, 45.125, \"EU1\", 30.5",
                          "\"A2\", \"Area2\", \"T2\", \"M2\", \"C2\", \"W2\", 4.5, 66.75, 135.375, \"EU2\", 91.5"));
  EXPECT_THAT(Criteria(rig.calls),
              ElementsAre("\"csar\" \"\" \"ZZZZZZZZZ\"", "csar desc artp cmsa cwoc cwar trti dist ccha ccur clrt"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tsmdm105 where csar='A1'", "select * from tsmdm105 where csar='A2'",
                          "DELETE FROM tsmdm105 where csar='A3'"));
}

TEST(ServiceAreas, FailWithTheSameTextsInFullAndByChange) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Areas:  Copy of Service Areas from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Areas:  Copy of Service Areas from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::service_areas
