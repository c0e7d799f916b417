#include "tests/copy/tables/table_copy.h"

namespace qmx::test::priority_time_scales {
namespace {

constexpr const char* kTable = "tsclm024";
constexpr const char* kManager = "PriorityTimeScale.PriorityTimeScaleManager";
constexpr const char* kRecord = "PriorityTimeScale.PriorityTimeScale";

Getters Scale(double minutes, const std::string& description) {
  return {{"getSolutionTimeInMinutes", minutes}, {"getdescription", description}};
}

TEST(PriorityTimeScales, AreCopiedInFullByANumericRange) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Scale(90.5, "An hour and a half"), Scale(2.125, "Two"), Scale(99999.9999, "Never")});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, {"sltt", "dsca"}),
              ElementsAre("2.12, \"Two\"", "90.5, \"An hour and a half\"", "100000.0, \"Never\""));
  EXPECT_THAT(ManagerCalls(rig.calls),
              ElementsAre("manager.initialize(\"Orvan, main\")", "manager.List(0.0, 99999.9999)", "manager.Close()"));
}

TEST(PriorityTimeScales, CallComponentsAndDatabaseInThisOrder) {
  CopyRig rig;
  rig.Sql("insert into tsclm024 (sltt, dsca) values (90.5, 'old'), (45, 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Updated(Scale(90.5, "An hour and a half")), Inserted(Scale(30, "Half an hour")),
              Deleted({{"getSolutionTimeInMinutes", 45.0}})});
  EXPECT_THAT(rig.calls.StartingWith({"manager", "status", "current", "rs1", "connection.Exec"}),
              ElementsAre("manager.initialize(\"Orvan, main\")",  //
                          "status.isDeleted(entry1)", "status.isUpdated(entry1)", "status.isInserted(entry1)",
                          "current1.getSolutionTimeInMinutes()",
                          "rs1.Open \"select * from tsclm024 where sltt=90.5\" 1 3 1",  //
                          "current1.getSolutionTimeInMinutes()", "rs1.sltt = 90.5", "current1.getdescription()",
                          "rs1.dsca = \"An hour and a half\"", "rs1.Update", "rs1.Close",  //
                          "status.isDeleted(entry2)", "status.isUpdated(entry2)", "status.isInserted(entry2)",
                          "current2.getSolutionTimeInMinutes()",
                          "rs1.Open \"select * from tsclm024 where sltt=30\" 1 3 1", "rs1.AddNew",  //
                          "current2.getSolutionTimeInMinutes()", "rs1.sltt = 30.0", "current2.getdescription()",
                          "rs1.dsca = \"Half an hour\"", "rs1.Update", "rs1.Close",  //
                          "status.isDeleted(entry3)", "current3.getSolutionTimeInMinutes()",
                          "connection.Execute DELETE FROM tsclm024 where sltt=45"));
  EXPECT_THAT(rig.Rows(kTable, {"sltt", "dsca"}),
              ElementsAre("30.0, \"Half an hour\"", "90.5, \"An hour and a half\""));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"sltt\" \"000.00\" \"999.99\"", "sltt desc"));
}

TEST(PriorityTimeScales, RefuseAKeyThatIsNoNumber) {
  CopyRig rig;
  rig.Sql("insert into tsclm024 (sltt, dsca) values (90.5, 'kept')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord, {Deleted({{"getSolutionTimeInMinutes", "1 or 1=1"}})});
  EXPECT_THAT(rig.Rows(kTable, {"sltt", "dsca"}), ElementsAre("90.5, \"kept\""));
  ASSERT_EQ(rig.failures.chains.size(), 1u);
  EXPECT_THAT(rig.failures.chains[0], testing::HasSubstr("1 or 1=1"));
}

TEST(PriorityTimeScales, FailWithTextsThatDifferInFullAndByChange) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Priority Time Scales:  Copy of Priority Time Scales from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Priority Time Scales - Only Changed:  Copy of Service Priority Time Scales from "
            "Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::priority_time_scales
