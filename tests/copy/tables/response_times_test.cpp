#include "tests/copy/tables/table_copy.h"

namespace qmx::test::response_times {
namespace {

constexpr const char* kTable = "tsclm020";
constexpr const char* kManager = "ResponseTimes.ResponseTimesManager";

Getters ResponseTime(const std::string& code, const std::string& suffix, double reaction, double start, double finish) {
  return {{"getResponseTime", code},         {"getResponseTimeDescription", "Within" + suffix},
          {"getCalendar", "K" + suffix},     {"getReactionPeriod", reaction},
          {"getSolutionStartPeriod", start}, {"getSolutionFinishPeriod", finish}};
}

TEST(ResponseTimes, RoundTheirPeriodsToTwoDecimalsHalvesToEven) {
  CopyRig rig;
  rig.erp.Lists(kManager,
                {ResponseTime("R1", "1", 2.125, 2.375, 2.005), ResponseTime("R2", "2", -2.125, 0.115, 7.999)});
  rig.Run(kTable);
  EXPECT_THAT(rig.Rows(kTable, {"rctt", "enst", "sltn"}), ElementsAre("2.12, 2.38, 2.0", "-2.12, 0.12, 8.0"));
}

}  // namespace
}  // namespace qmx::test::response_times
