#include "tests/copy/tables/table_copy.h"

namespace qmx::test::service_order_engineers {
namespace {

constexpr const char* kTable = "tssoc205";
constexpr const char* kManager = "ServiceOrderEngineers.ServiceOrderEngineersManager";
constexpr const char* kRecord = "ServiceOrderEngineers.ServiceOrderEngineers";
const std::vector<std::string> kColumns = {"orno", "Line", "emno", "acln"};

Getters Key(const std::string& order, std::int16_t line) {
  return {{"getServiceOrder", order}, {"getLineNumber", line}};
}

Getters Engineer(const std::string& order, std::int16_t line, const std::string& employee, std::int16_t activity) {
  Getters getters = Key(order, line);
  getters.insert({{"getServiceEngineer", employee}, {"getActivity", activity}});
  return getters;
}

TEST(ServiceOrderEngineers, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Engineer("SO1", 1, "E1", 10)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre("\"SO1\", 1, \"E1\", 10"));
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"), "getServiceOrder getLineNumber getServiceEngineer getActivity");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"\", \"ZZZZZZZZZ\", 0, 9999)", "manager.Close()"));
}

// The mapper writes "Line", the criteria and the WHERE text say "line": one column.
TEST(ServiceOrderEngineers, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tssoc205 (orno, line, emno) values ('SO1', 2, 'old'), ('SO1', 3, 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(Engineer("SO1", 1, "E1", 10)), Updated(Engineer("SO1", 2, "E2", 20)), Deleted(Key("SO1", 3))});
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre("\"SO1\", 1, \"E1\", 10", "\"SO1\", 2, \"E2\", 20"));
  EXPECT_THAT(Criteria(rig.calls),
              ElementsAre("\"orno\" \"\" \"ZZZZZZZZZ\"", "\"line\" \"0000\" \"9999\"", "emno acln"));
  EXPECT_THAT(SqlTexts(rig.calls), ElementsAre("select * from tssoc205 where orno='SO1' and   line= 1",
                                               "select * from tssoc205 where orno='SO1' and   line= 2",
                                               "DELETE FROM tssoc205 where orno='SO1' and   line= 3"));
}

TEST(ServiceOrderEngineers, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Order Engineers:  Copy of Service Order Engineers from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Order Engineers - Only Changed:  Copy of Service Order Engineers from Orvan to "
            "Local DB failed");
}

}  // namespace
}  // namespace qmx::test::service_order_engineers
