#include "tests/copy/tables/table_copy.h"

namespace qmx::test::service_centers {
namespace {

constexpr const char* kTable = "tsmdm100";
constexpr const char* kManager = "ServiceCenters.ServiceCentersManager";
constexpr const char* kRecord = "ServiceCenters.ServiceCenters";
const std::vector<std::string> kColumns = {"cwoc", "dsca", "wctp", "cmwc", "cwar", "clrt", "srtp", "srep"};

// As the listing gives it; the audit reader's object has the same getters but an empty description.
Getters ServiceCenter(const std::string& code, const std::string& description, const std::string& suffix) {
  return {{"getServiceCentersCode", code},        {"getdescription", description},
          {"getServiceCenterType", "T" + suffix}, {"getMainServiceCenter", "M" + suffix},
          {"getWarehouse", "W" + suffix},         {"getLaborRate", 30.5},
          {"getFieldOfSupport", "F" + suffix},    {"getSalesRepresentative", "S" + suffix}};
}

TEST(ServiceCenters, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {ServiceCenter("C1", "North", "1")});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"C1\", \"North\", \"T1\", \"M1\", \"W1\", 30.5, \"F1\", \"S1\""));
  EXPECT_EQ(ColumnsWritten(rig.calls), "cwoc dsca wctp cmwc cwar clrt srtp srep");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getServiceCentersCode getdescription getServiceCenterType getMainServiceCenter getWarehouse getLaborRate "
            "getFieldOfSupport getSalesRepresentative");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"\", \"ZZZZZZZZZ\")", "manager.Close()"));
}

TEST(ServiceCenters, AreReadOnceMoreFromTheListingWhenTheyChange) {
  CopyRig rig;
  rig.Sql("insert into tsmdm100 (cwoc, dsca) values ('C2', 'old'), ('C3', 'old')");
  rig.erp.ListsBy(kManager, [](ScriptedObject::Arguments bounds) {
    const std::string key = bounds[0].Value().ToText();
    return std::vector<Getters>{ServiceCenter(key, "listed " + key, key), ServiceCenter("other", "second", "x")};
  });
  RunChanged(rig, kTable, kRecord,
             {Inserted(ServiceCenter("C1", "", "a")), Updated(ServiceCenter("C2", "", "b")),
              Deleted({{"getServiceCentersCode", "C3"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"C1\", \"listed C1\", \"TC1\", \"MC1\", \"WC1\", 30.5, \"FC1\", \"SC1\"",
                          "\"C2\", \"listed C2\", \"TC2\", \"MC2\", \"WC2\", 30.5, \"FC2\", \"SC2\""));
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"C1\", \"C1\")", "manager.List(\"C2\", \"C2\")"));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"cwoc\" \"\" \"ZZZZZZ\"", "cwoc wctp cmwc cwar clrt srtp srep"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tsmdm100 where cwoc='C1'", "select * from tsmdm100 where cwoc='C2'",
                          "DELETE FROM tsmdm100 where cwoc='C3'"));
}

TEST(ServiceCenters, KeepTheirDescriptionWhenTheListingFindsNothing) {
  CopyRig rig;
  rig.Sql("insert into tsmdm100 (cwoc, dsca, wctp) values ('C2', 'kept', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(ServiceCenter("C1", "never read", "a")), Updated(ServiceCenter("C2", "never read", "b"))});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              ElementsAre("\"C1\", null, \"Ta\", \"Ma\", \"Wa\", 30.5, \"Fa\", \"Sa\"",
                          "\"C2\", \"kept\", \"Tb\", \"Mb\", \"Wb\", 30.5, \"Fb\", \"Sb\""));
}

TEST(ServiceCenters, KeepTheirDescriptionWhenTheListingIsNoObject) {
  CopyRig rig;
  rig.erp.ListsNoObject(kManager);
  RunChanged(rig, kTable, kRecord, {Inserted(ServiceCenter("C1", "never read", "a"))});
  EXPECT_THAT(rig.Rows(kTable, {"cwoc", "dsca"}), ElementsAre("\"C1\", null"));
}

TEST(ServiceCenters, AreReadAgainAfterTheRowWasAddedAndBeforeItIsFilled) {
  CopyRig rig;
  rig.erp.Lists(kManager, {ServiceCenter("C1", "North", "1")});
  RunChanged(rig, kTable, kRecord, {Inserted(ServiceCenter("C1", "", "a"))});
  EXPECT_THAT(rig.calls.StartingWith({"current1", "manager.List", "listing", "rs1.AddNew", "rs1.cwoc", "rs1.Update"}),
              ElementsAre("current1.getServiceCentersCode()", "rs1.AddNew", "current1.getServiceCentersCode()",
                          "manager.List(\"C1\", \"C1\")", "listing.hasMoreElements()", "listing.nextElement()",
                          "rs1.cwoc = \"C1\"", "rs1.Update"));
}

TEST(ServiceCenters, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Centers:  Copy of Service Centers from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Centers- Only Changed:  Copy of Service Centers from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::service_centers
