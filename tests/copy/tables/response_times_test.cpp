#include "tests/copy/tables/table_copy.h"

namespace qmx::test::response_times {
namespace {

constexpr const char* kTable = "tsclm020";
constexpr const char* kManager = "ResponseTimes.ResponseTimesManager";
constexpr const char* kRecord = "ResponseTimes.ResponseTimes";
const std::vector<std::string> kColumns = {"crtc", "dsca", "ccal", "rctt", "enst", "sltn"};

Getters ResponseTime(const std::string& code, const std::string& suffix, double reaction, double start, double finish) {
  return {{"getResponseTime", code},         {"getResponseTimeDescription", "Within" + suffix},
          {"getCalendar", "K" + suffix},     {"getReactionPeriod", reaction},
          {"getSolutionStartPeriod", start}, {"getSolutionFinishPeriod", finish}};
}

TEST(ResponseTimes, AreCopiedInFull) {
  CopyRig rig;
  rig.erp.Lists(kManager, {ResponseTime("R1", "1", 4.25, 8.5, 24.75)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre("\"R1\", \"Within1\", \"K1\", 4.25, 8.5, 24.75"));
  EXPECT_EQ(ColumnsWritten(rig.calls), "crtc dsca ccal rctt enst sltn");
  EXPECT_EQ(MembersCalled(rig.calls, "listed1"),
            "getResponseTime getResponseTimeDescription getCalendar getReactionPeriod getSolutionStartPeriod "
            "getSolutionFinishPeriod");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")",
                                                   "manager.List(\"\", \"ZZZZZZZZZ\")", "manager.Close()"));
}

TEST(ResponseTimes, RoundTheirPeriodsToTwoDecimalsHalvesToEven) {
  CopyRig rig;
  rig.erp.Lists(kManager,
                {ResponseTime("R1", "1", 2.125, 2.375, 2.005), ResponseTime("R2", "2", -2.125, 0.115, 7.999)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, {"rctt", "enst", "sltn"}), ElementsAre("2.12, 2.38, 2.0", "-2.12, 0.12, 8.0"));
}

TEST(ResponseTimes, AreCopiedByChange) {
  CopyRig rig;
  rig.Sql("insert into tsclm020 (crtc, dsca) values ('R2', 'old'), ('R3', 'old')");
  rig.erp.Lists(kManager, {});
  RunChanged(rig, kTable, kRecord,
             {Inserted(ResponseTime("R1", "1", 4.25, 8.5, 24.75)), Updated(ResponseTime("R2", "2", 2.125, 2.375, 0.5)),
              Deleted({{"getResponseTime", "R3"}})});
  EXPECT_THAT(rig.Rows(kTable, kColumns), ElementsAre("\"R1\", \"Within1\", \"K1\", 4.25, 8.5, 24.75",
                                                      "\"R2\", \"Within2\", \"K2\", 2.12, 2.38, 0.5"));
  EXPECT_THAT(Criteria(rig.calls), ElementsAre("\"crtc\" \"\" \"ZZZ\"", "crtc desc ccal rctt enst sltn"));
  EXPECT_THAT(SqlTexts(rig.calls),
              ElementsAre("select * from tsclm020 where crtc='R1'", "select * from tsclm020 where crtc='R2'",
                          "DELETE FROM tsclm020 where crtc='R3'"));
}

TEST(ResponseTimes, FailWithTextsThatDifferInFullAndByChange) {
  EXPECT_EQ(FailureOfFullCopy(kTable, kManager),
            "error 600, Copy Response Times:  Copy of Response Times from Orvan to Local DB failed");
  EXPECT_EQ(FailureOfChangedCopy(kTable, kManager),
            "error 600, Copy Service Response Times - Only Changed:  Copy of Service Response Times from Orvan to "
            "Local DB failed");
}

}  // namespace
}  // namespace qmx::test::response_times
