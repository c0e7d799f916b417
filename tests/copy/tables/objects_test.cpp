#include "tests/copy/tables/table_copy.h"

namespace qmx::test::objects {
namespace {

constexpr const char* kTable = "tscfg200";
constexpr const char* kManager = "ServiceObjects.ServiceObjectsManager";
constexpr const char* kRecord = "ServiceObjects.ServiceObjects";
const std::vector<std::string> kColumns = {"ccfg", "crob", "oseq", "dsca", "cogr", "cusc", "manu", "ccal", "cdel"};

Getters Key(const std::string& configuration, const std::string& object, std::int16_t number) {
  return {{"getConfiguration", configuration}, {"getServiceObject", object}, {"getObjectNumber", number}};
}

Getters ServiceObject(const std::string& configuration, const std::string& object, std::int16_t number,
                      const std::string& suffix) {
  Getters getters = Key(configuration, object, number);
  getters.insert({{"getdescription", "Pump" + suffix},
                  {"getObjectGroup", "G" + suffix},
                  {"getUsageClass", "U" + suffix},
                  {"getManufacturedBy", "M" + suffix},
                  {"getCalendar", "K" + suffix},
                  {"getLocationAddress", "AD" + suffix}});
  return getters;
}

TEST(ServiceObjects, AreCopiedInFullUpToFiftyZ) {
  CopyRig rig;
  rig.erp.Lists(kManager, {ServiceObject("CF1", "PUMP", 10, "1")});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"CF1\", \"PUMP\", 10, \"Pump1\", \"G1\", \"U1\", \"M1\", \"K1\", \"AD1\""));
  EXPECT_EQ(ColumnsWritten(rig.calls), "ccfg crob oseq dsca cogr cusc manu ccal cdel");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getConfiguration getServiceObject getObjectNumber getdescription getObjectGroup getUsageClass "
            "getManufacturedBy getCalendar getLocationAddress");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"\", \"ZZZZZZZZZ\", \"\", "
                                                   "\"ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ\", 0, 9999)",
                                                   "manager.Close()"));
}

TEST(ServiceObjects, AreCopiedByChangeOfTheirThreeKeysTogether) {
  CopyRig rig;
  rig.Sql(
      "insert into tscfg200 (ccfg, crob, oseq, dsca) values ('CF1', 'PUMP', 10, 'old'), ('CF1', 'PUMP', 20, 'old'), "
      "('CF1', 'FAN', 20, 'other'), ('CF2', 'PUMP', 20, 'other')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(ServiceObject("CF1", "FAN", 10, "1")), Updated(ServiceObject("CF1", "PUMP", 10, "2")),
              Deleted(Key("CF1", "PUMP", 20))});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              testing::UnorderedElementsAre("\"CF1\", \"FAN\", 10, \"Pump1\", \"G1\", \"U1\", \"M1\", \"K1\", \"AD1\"",
                                            "\"CF1\", \"PUMP\", 10, \"Pump2\", \"G2\", \"U2\", \"M2\", \"K2\", \"AD2\"",
                                            "\"CF1\", \"FAN\", 20, \"other\", null, null, null, null, null",
                                            "\"CF2\", \"PUMP\", 20, \"other\", null, null, null, null, null"));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"ccfg\" \"\" \"ZZZZZZZZ\"",
                                               "\"crob\" \"\" \"ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ\"",
                                               "\"oseq\" \"0000\" \"9999\"", "desc cogr cusc manu ccal cdel"));
  EXPECT_THAT(SqlTexts(rig.calls), ElementsAre("select * from tscfg200 where ccfg='CF1' and crob='FAN' and oseq= 10",
                                               "select * from tscfg200 where ccfg='CF1' and crob='PUMP' and oseq= 10",
                                               "DELETE FROM tscfg200 where ccfg='CF1' and crob='PUMP' and oseq= 20"));
}

TEST(ServiceObjects, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Objects:  Copy of Service Objects from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Objects - Only Change:  Copy of Service Objects from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::objects
