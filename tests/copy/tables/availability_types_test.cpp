#include "tests/copy/tables/table_copy.h"

namespace qmx::test::availability_types {
namespace {

constexpr const char* kTable = "tcccp001";
constexpr const char* kManager = "AvailabilityType.AvailabilityTypeManager";
constexpr const char* kRecord = "AvailabilityType.AvailabilityType";

Getters AvailabilityType(const std::string& code, const std::string& description) {
  return {{"getavailabilityType", code},
          {"getdescription", description},
          {"getplanTimeUnit", 2},
          {"getnoOfHoursPerDay", 7.5},
          {"getavailable", 1}};
}

TEST(AvailabilityTypes, AreCopiedInFull) {
  CopyRig rig;
  rig.Sql("insert into tcccp001 (ract, dsca) values ('OLD', 'gone')");
  rig.erp.Lists(kManager, {AvailabilityType("WRK", "Work")}, "ListAllAvailable");
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, {"ract", "dsca", "ptmu", "hrsd", "avlb"}),
              ElementsAre("\"WRK\", \"Work\", \"2\", 7.5, \"1\""));
  EXPECT_EQ(ColumnsWritten(rig.calls), "ract dsca ptmu hrsd avlb");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getavailabilityType getdescription getplanTimeUnit getnoOfHoursPerDay getavailable");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.ListAllAvailable(\"\", \"ZZZZZZ\")", "manager.Close()"));
}

TEST(AvailabilityTypes, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tcccp001 (ract, dsca) values ('TRN', 'old'), ('SCK', 'old')");
  rig.erp.Lists(kManager, {}, "ListAllAvailable");
  RunChanged(rig, kTable, kRecord,
             {Inserted(AvailabilityType("WRK", "Work")), Updated(AvailabilityType("TRN", "Training")),
              Deleted({{"getavailabilityType", "SCK"}})});
  EXPECT_THAT(rig.Rows(kTable, {"ract", "dsca", "ptmu", "hrsd", "avlb"}),
              ElementsAre("\"TRN\", \"Training\", \"2\", 7.5, \"1\"", "\"WRK\", \"Work\", \"2\", 7.5, \"1\""));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"ract\" \"\" \"ZZZZZZ\"", "dsca avlb ptmu hrsd"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tcccp001 where ract='WRK'", "select * from tcccp001 where ract='TRN'",
                          "DELETE FROM tcccp001 where ract='SCK'"));
}

TEST(AvailabilityTypes, FailWithThePluralInFullAndTheSingularByChange) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Availability Types:  Copy of Availability Types from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Availability Type:  Copy of Availability Type from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::availability_types
