#include "tests/copy/tables/table_copy.h"

namespace qmx::test::skills {
namespace {

constexpr const char* kTable = "tsmdm130";
constexpr const char* kManager = "Skills.SkillsManager";
constexpr const char* kRecord = "Skills.Skills";
const std::vector<std::string> kColumns = {"skll", "dsca", "clrt"};

Getters Skill(const std::string& code, const std::string& description, double rate) {
  return {{"getSkill", code}, {"getdescription", description}, {"getLaborRate", rate}};
}

TEST(Skills, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Skill("WELD", "Welding", 12.5)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre("\"WELD\", \"Welding\", 12.5"));
  EXPECT_EQ(ColumnsWritten(rig.calls), "skll dsca clrt");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"), "getSkill getdescription getLaborRate");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"\", \"ZZZZZZZZZ\")", "manager.Close()"));
}

TEST(Skills, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tsmdm130 (skll, dsca) values ('HEAT', 'old'), ('MILL', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(Skill("WELD", "Welding", 12.5)), Updated(Skill("HEAT", "Heating", 7.25)),
              Deleted({{"getSkill", "MILL"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre("\"HEAT\", \"Heating\", 7.25", "\"WELD\", \"Welding\", 12.5"));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"skll\" \"\" \"ZZZZ\"", "skll desc clrt"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tsmdm130 where skll='WELD'", "select * from tsmdm130 where skll='HEAT'",
                          "DELETE FROM tsmdm130 where skll='MILL'"));
}

TEST(Skills, FailWithTheSameTextsInFullAndByChange) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Skills:  Copy of Service Skills from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Skills:  Copy of Service Skills from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::skills
