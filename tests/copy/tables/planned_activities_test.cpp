#include "tests/copy/tables/table_copy.h"

namespace qmx::test::planned_activities {
namespace {

constexpr const char* kTable = "tsspc200";
constexpr const char* kManager = "PlannedActivities.PlannedActivitiesManager";
constexpr const char* kRecord = "PlannedActivities.PlannedActivities";
const std::vector<std::string> kColumns = {"ccfg", "crac", "aseq", "dsca", "cagr", "cstp", "cwoc", "crob",
                                           "oseq", "esct", "psct", "pfct", "lfct", "adur", "trtm", "skla",
                                           "sklb", "sklc", "appo", "stat", "orno", "acln"};

Getters Key(const std::string& configuration, const std::string& activity, std::int16_t number) {
  return {{"getConfiguration", configuration}, {"getActivity", activity}, {"getActivityNumber", number}};
}

Getters PlannedActivity(CopyRig& rig, const std::string& configuration, const std::string& activity,
                        std::int16_t number, const std::string& suffix) {
  const auto hour = [&](int hour) { return rig.erp.Date({126, 2, 29, hour, 0, 1}); };
  Getters getters = Key(configuration, activity, number);
  getters.insert({{"getdescription", "Inspect" + suffix},
                  {"getActivityGroup", "AG" + suffix},
                  {"getServiceType", "T" + suffix},
                  {"getServiceCenter", "C" + suffix},
                  {"GetObject", "OB" + suffix},
                  {"getObjectNumber", std::int16_t{4}},
                  {"getEarliestStartTime", hour(1)},
                  {"getPlannedStartTime", hour(2)},
                  {"getPlannedFinishTime", hour(3)},
                  {"getLatestFinishTime", rig.erp.Date({0, 0, 1, 8, 0, 0})},
                  {"getActivityDuration", 2.5},
                  {"getTravelingTime", 0.75},
                  {"getSkill1", "SA" + suffix},
                  {"getSkill2", "SB" + suffix},
                  {"getSkill3", "SC" + suffix},
                  {"getAppointment", std::int16_t{2}},
                  {"getActivityStatus", std::int16_t{5}},
                  {"getServiceOrder", "SO" + suffix},
                  {"getActivityLineNumber", std::int16_t{60}}});
  return getters;
}

std::string Row(const std::string& key, const std::string& s) {
  return key + ", \"Inspect" + s + "\", \"AG" + s + "\", \"T" + s + "\", \"C" + s + "\", \"OB" + s +
         "\", 4, 2026-03-29 01:00:01, 2026-03-29 02:00:01, 2026-03-29 03:00:01, null, 2.5, 0.75, \"SA" + s +
         "\", \"SB" + s + "\", \"SC" + s + "\", 0, \"5\", \"SO" + s + "\", 60";
}

TEST(PlannedActivities, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {PlannedActivity(rig, "CF1", "RA1", 10, "x")});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre(Row("\"CF1\", \"RA1\", 10", "x")));
  EXPECT_EQ(ColumnsWritten(rig.calls),
            "ccfg crac aseq dsca cagr cstp cwoc crob oseq esct psct pfct lfct adur trtm skla sklb sklc appo stat orno "
            "acln");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getConfiguration getActivity getActivityNumber getdescription getActivityGroup getServiceType "
            "getServiceCenter GetObject getObjectNumber getEarliestStartTime getPlannedStartTime getPlannedFinishTime "
            "getLatestFinishTime getActivityDuration getTravelingTime getSkill1 getSkill2 getSkill3 getAppointment "
            "getActivityStatus getServiceOrder getActivityLineNumber");
  EXPECT_THAT(ManagerCalls(rig.calls),
              ElementsAre("manager.initialize(\"Orvan, main\")",
                          "manager.List(\"\", \"ZZZZZZZZZ\", \"\", \"ZZZZZZZZZ\", 0, 9999)", "manager.Close()"));
}

TEST(PlannedActivities, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tsspc200 (ccfg, crac, aseq, dsca) values ('CF1', 'RA1', 20, 'old'), ('CF1', 'RA2', 20, 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(PlannedActivity(rig, "CF1", "RA1", 10, "x")),
              Updated(PlannedActivity(rig, "CF1", "RA1", 20, "y")), Deleted(Key("CF1", "RA2", 20))});
  EXPECT_THAT(rig.Rows(kTable, kColumns),
              testing::UnorderedElementsAre(Row("\"CF1\", \"RA1\", 10", "x"), Row("\"CF1\", \"RA1\", 20", "y")));
  EXPECT_THAT(Criteria(rig.calls),
              ElementsAre("\"ccfg\" \"\" \"ZZZZZZZZZ\"", "\"crac\" \"\" \"ZZZZZZZZZ\"", "\"aseq\" \"0000\" \"9999\"",
                          "desc cagr cstp cwoc crob oseq esct psct pfct lfct adur trtm skla sklb sklc orno acln stat "
                          "appo"));
  EXPECT_THAT(SqlTexts(rig.calls), ElementsAre("select * from tsspc200 where ccfg='CF1' and  crac='RA1' and   aseq= 10",
                                               "select * from tsspc200 where ccfg='CF1' and  crac='RA1' and   aseq= 20",
                                               "DELETE FROM tsspc200 where ccfg='CF1' and  crac='RA2' and   aseq= 20"));
}

TEST(PlannedActivities, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Planned Activities:  Copy of Service Planned Activities from Orvan to Local DB "
            "failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Planned Activities - Only Changed:  Copy of Service Planned Activities from Orvan "
            "to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::planned_activities
