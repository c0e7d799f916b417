// The engine's entry into the expansion, which no copy takes.
#include "tests/copy/tables/calendar_rig.h"
#include "tests/support/raised.h"

namespace qmx::test::calendar_expansion {
namespace {

struct FillTable : testing::Test {
  void SetUp() override {
    rig.Employee("4711", "DAY");
    rig.Sql(
        "insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values "
        "('DAY', 'WRK', '2026-11-20', 800, '2026-11-21', 2400)");
    rig.inside.Connect(rig.ConnectionText());
  }
  CalendarRig rig;
};

TEST_F(FillTable, ExpandsTheCalendarsInUse) {
  EXPECT_TRUE(rig.inside.FillTable_tscalender().IsEmpty());
  rig.inside.LocalConnection().Close();
  EXPECT_THAT(rig.Rows("tscalender", {"ccal", "sttm", "entm"}),
              ElementsAre("\"DAY\", 2026-11-20 08:00:00, 2026-11-21", "\"DAY\", 2026-11-21 08:00:00, 2026-11-22"));
}

TEST_F(FillTable, UsesTheEnginesOwnRecordSetAndLeavesItClosed) {
  rig.inside.FillTable_tscalender();
  EXPECT_EQ(rig.inside.LocalRecordSet().State(), kStateClosed);
  EXPECT_THAT(rig.calls.StartingWith({"rs1.Open"}), testing::SizeIs(4));  // the codes, the first day, two periods
  for (const std::string& line : rig.calls.StartingWith({"rs"})) EXPECT_TRUE(line.starts_with("rs1.")) << line;
}

TEST_F(FillTable, ReportsWhatEndsTheExpansion) {
  rig.Sql("update tcccp030 set entm = 32768");
  const Error error = Raised([&] { rig.inside.FillTable_tscalender(); });
  EXPECT_EQ(error.Number(), 106);
  EXPECT_EQ(error.Source(), "FillTable_tscalender");
  EXPECT_EQ(error.Description(), " Filling tscalender table failed");
}

TEST_F(FillTable, RaisesNothingIfTheExpansionRaisesNothing) {
  rig.Sql("drop table tsmdm140");
  EXPECT_NO_THROW(rig.inside.FillTable_tscalender());
}

}  // namespace
}  // namespace qmx::test::calendar_expansion
