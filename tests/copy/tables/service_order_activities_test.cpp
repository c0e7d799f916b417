#include "tests/copy/tables/table_copy.h"

namespace qmx::test::service_order_activities {
namespace {

constexpr const char* kTable = "tssoc210";
constexpr const char* kManager = "ServiceOrderActivities.ServiceOrderActivitiesManager";
constexpr const char* kRecord = "ServiceOrderActivities.ServiceOrderActivities";
const std::vector<std::string> kColumns = {
    "orno", "acln", "crac", "dsca", "cstp", "cagr", "ccfg", "crob", "oseq", "ccll", "crtc", "prpr", "cupr", "obpr",
    "cprl", "cstn", "asta", "skla", "sklb", "sklc", "acdu", "appo", "pstm", "pftm", "estm", "lftm", "astm", "aftm"};

Getters Key(const std::string& order, std::int16_t line) {
  return {{"getServiceOrder", order}, {"getActivityLineNumber", line}};
}

Getters Activity(CopyRig& rig, const std::string& order, std::int16_t line, const std::string& suffix) {
  const auto hour = [&](int hour) { return rig.erp.Date({126, 10, 20, hour, 30, 0}); };
  Getters getters = Key(order, line);
  getters.insert({{"getReferenceActivity", "RA" + suffix},
                  {"getdescription", "Grease" + suffix},
                  {"getServiceType", "T" + suffix},
                  {"getActivityGroup", "AG" + suffix},
                  {"getConfiguration", "CF" + suffix},
                  {"GetObject", "OB" + suffix},
                  {"getObjectNumber", std::int16_t{4}},
                  {"getCall", "CA" + suffix},
                  {"getResponseTime", "RT" + suffix},
                  {"getProblemPriority", std::int16_t{5}},
                  {"getCustomerPriority", std::int16_t{6}},
                  {"getObjectPriority", std::int16_t{7}},
                  {"getProblem", "PB" + suffix},
                  {"getSolution", "SL" + suffix},
                  {"getActivityStatus", std::int16_t{8}},
                  {"getSkill1", "SA" + suffix},
                  {"getSkill2", "SB" + suffix},
                  {"getSkill3", "SC" + suffix},
                  {"getActivityDuration", 2.75},
                  {"getAppointment", std::int16_t{1}},
                  {"getPlannedStartTime", hour(1)},
                  {"getPlannedFinishTime", hour(2)},
                  {"getPlannedEarliestStartTime", rig.erp.Date({0, 0, 0, 0, 0, 0})},
                  {"getPlannedLatestFinishTime", hour(4)},
                  {"getExecutionStartTime", hour(5)},
                  {"getExecutionFinishTime", hour(6)}});
  return getters;
}

std::string Row(const std::string& key, const std::string& s) {
  return key + ", \"RA" + s + "\", \"Grease" + s + "\", \"T" + s + "\", \"AG" + s + "\", \"CF" + s + "\", \"OB" + s +
         "\", 4, \"CA" + s + "\", \"RT" + s + "\", \"5\", \"6\", \"7\", \"PB" + s + "\", \"SL" + s + "\", \"8\", \"SA" +
         s + "\", \"SB" + s + "\", \"SC" + s +
         "\", 2.75, 1, 2026-11-20 01:30:00, 2026-11-20 02:30:00, null, 2026-11-20 04:30:00, 2026-11-20 05:30:00, "
         "2026-11-20 06:30:00";
}

TEST(ServiceOrderActivities, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {Activity(rig, "SO1", 10, "x")});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre(Row("\"SO1\", 10", "x")));
  EXPECT_EQ(ColumnsWritten(rig.calls),
            "orno acln crac dsca cstp cagr ccfg crob oseq ccll crtc prpr cupr obpr cprl cstn asta skla sklb sklc acdu "
            "appo pstm pftm estm lftm astm aftm");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getServiceOrder getActivityLineNumber getReferenceActivity getdescription getServiceType "
            "getActivityGroup getConfiguration GetObject getObjectNumber getCall getResponseTime getProblemPriority "
            "getCustomerPriority getObjectPriority getProblem getSolution getActivityStatus getSkill1 getSkill2 "
            "getSkill3 getActivityDuration getAppointment getPlannedStartTime getPlannedFinishTime "
            "getPlannedEarliestStartTime getPlannedLatestFinishTime getExecutionStartTime getExecutionFinishTime");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"\", \"ZZZZZZZZZ\", 0, 9999)", "manager.Close()"));
}

TEST(ServiceOrderActivities, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tssoc210 (orno, acln, dsca) values ('SO1', 20, 'old'), ('SO1', 30, 'old'), ('SO2', 30, 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(Activity(rig, "SO1", 10, "x")), Updated(Activity(rig, "SO1", 20, "y")), Deleted(Key("SO1", 30)),
              Deleted(Key("SO2", 30))});
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre(Row("\"SO1\", 10", "x"), Row("\"SO1\", 20", "y")));
  EXPECT_THAT(Criteria(rig.calls),
              ElementsAre("\"orno\" \"\" \"ZZZZZZZZZ\"", "\"acln\" \"0000\" \"9999\"",
                          "asta desc crac cstp cagr ccfg crob oseq ccll crtc prpr cupr obpr cprl cstn skla sklb sklc "
                          "acdu appo pstm pftm estm lftm astm aftm"));
  EXPECT_THAT(SqlTexts(rig.calls), ElementsAre("select * from tssoc210 where orno='SO1' and   acln= 10",
                                               "select * from tssoc210 where orno='SO1' and   acln= 20",
                                               "DELETE FROM tssoc210 where orno='SO1' and   acln= 30",
                                               "DELETE FROM tssoc210 where orno='SO2' and   acln= 30"));
}

TEST(ServiceOrderActivities, FailWithTheirTextsTheFullCopyWithTheOrdersDescription) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Service Orders Activities - Full Copy:  Copy of Service Orders from Orvan to Local DB "
            "failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Orders Activities- Only Changed:  Copy of Service Orders Activities from Orvan to "
            "Local DB failed");
}

}  // namespace
}  // namespace qmx::test::service_order_activities
