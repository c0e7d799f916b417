#include "tests/copy/tables/table_copy.h"

namespace qmx::test::configurations {
namespace {

constexpr const char* kTable = "tscfg220";
constexpr const char* kManager = "Configurations.ConfigurationsManager";
constexpr const char* kRecord = "Configurations.Configurations";
const std::vector<std::string> kColumns = {"ccfg", "dsca", "ofbp", "cwoc", "csar", "tecr", "teca",
                                           "tecb", "cusc", "czon", "dist", "trti", "ccal", "cadr"};

Getters Configuration(const std::string& code, const std::string& suffix, double distance) {
  return {{"getConfiguration", code},
          {"getdescription", "Plant" + suffix},
          {"getSoldToBusinessPartner", "BP" + suffix},
          {"getServiceCenter", "C" + suffix},
          {"getServiceArea", "A" + suffix},
          {"getResponsibleEngineer", "R" + suffix},
          {"getPreferredEngineer1", "F" + suffix},
          {"getPreferredEngineer2", "G" + suffix},
          {"getUsageClass", "U" + suffix},
          {"getDistanceZone", "Z" + suffix},
          {"getTravelDistance", distance},
          {"getTravelingTime", distance / 2},
          {"getCalendar", "K" + suffix},
          {"getLocationAddress", "AD" + suffix}};
}

TEST(Configurations, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Configuration("CF1", "1", 12.5)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"CF1\", \"Plant1\", \"BP1\", \"C1\", \"A1\", \"R1\", \"F1\", \"G1\", \"U1\", \"Z1\", 12.5, "
                          "6.25, \"K1\", \"AD1\""));
  EXPECT_EQ(ColumnsWritten(rig.calls), "ccfg dsca ofbp cwoc csar tecr teca tecb cusc czon dist trti ccal cadr");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getConfiguration getdescription getSoldToBusinessPartner getServiceCenter getServiceArea "
            "getResponsibleEngineer getPreferredEngineer1 getPreferredEngineer2 getUsageClass getDistanceZone "
            "getTravelDistance getTravelingTime getCalendar getLocationAddress");
  EXPECT_THAT(ManagerCalls(rig.calls),
              ElementsAre("manager.initialize(\"Orvan, main\")",
                          "manager.List(\"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", \"\", "
                          "\"ZZZZZZZZZ\")",
                          "manager.Close()"));
}

TEST(Configurations, AreCopiedByChangeAndDeletedWithTheirOwnWhereText) {
  CopyRig rig;
  rig.Sql("insert into tscfg220 (ccfg, dsca) values ('CF2', 'old'), ('CF3', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(Configuration("CF1", "1", 12.5)), Updated(Configuration("CF2", "2", 0.5)),
              Deleted({{"getConfiguration", "CF3"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"CF1\", \"Plant1\", \"BP1\", \"C1\", \"A1\", \"R1\", \"F1\", \"G1\", \"U1\", \"Z1\", 12.5, "
                          "6.25, \"K1\", \"AD1\"",
                          "\"CF2\", \"Plant2\", \"BP2\", \"C2\", \"A2\", \"R2\", \"F2\", \"G2\", \"U2\", \"Z2\", 0.5, "
                          "0.25, \"K2\", \"AD2\""));
  // Eight Z, one less than the full copy's nine: a code above them is seen by the full copy alone.
  EXPECT_THAT(Criteria(rig.calls),
              ElementsAre("\"ccfg\" \"\" \"ZZZZZZZZ\"", "desc ofbp cwoc csar teca tecb cusc czon dist trti ccal cadr"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tscfg220 where ccfg='CF1'", "select * from tscfg220 where ccfg='CF2'",
                          "DELETE FROM tscfg220 WHERE ccfg = 'CF3'"));
}

TEST(Configurations, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Configurations:  Copy of Service Configurations from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Configurations - Only Change:  Copy of Service Configurations from Orvan to Local "
            "DB failed");
}

}  // namespace
}  // namespace qmx::test::configurations
