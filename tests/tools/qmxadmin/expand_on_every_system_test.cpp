#include "tests/tools/qmxadmin/admin_on_a_system.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

using QmxAdminExpandOnASystem = AdminOnASystem;
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminExpandOnASystem, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminExpandOnASystem, WritesAllIntervalsAgainEachTime) {
  Execute("insert into tsmdm140 (emno, ccal) values ('1', 'DAY')");
  Execute(
      "insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values "
      "('DAY', 'WRK', '2026-11-23', 800, '2026-11-24', 1200), ('DAY', 'WRK', '2026-11-23', 1100, '2026-11-23', 1630)");
  Execute("insert into tscalender (ccal, sttm, entm) values ('DAY', '1999-01-01', '1999-01-02')");
  for (int run = 1; run <= 2; ++run) {
    const Process expansion = Admin({"expand"});
    EXPECT_EQ(expansion.status, 0) << expansion.err;
    EXPECT_EQ(expansion.out, "DAY: 2 intervals\n");
    EXPECT_THAT(Column("select sttm from tscalender order by sttm"),
                ElementsAre("2026-11-23 08:00:00", "2026-11-24 08:00:00"));
    EXPECT_THAT(Column("select entm from tscalender order by sttm"),
                ElementsAre("2026-11-23 16:30:00", "2026-11-24 12:00:00"));
  }
}

TEST_P(QmxAdminExpandOnASystem, ReplacesEachCalendarInOneCommit) {
  Execute("insert into tsmdm140 (emno, ccal) values ('1', 'DAY'), ('2', 'NIGHT')");
  Execute(
      "insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values "
      "('DAY', 'WRK', '2026-11-23', 800, '2026-11-24', 1200), ('NIGHT', 'WRK', '2026-11-23', 2200, '2026-11-23', "
      "2400)");
  Execute("insert into tscalender (ccal, sttm, entm) values ('DAY', '1999-01-01', '1999-01-02')");
  const Process expansion = Admin({"expand", "--whole"});
  EXPECT_EQ(expansion.status, 0) << expansion.err;
  EXPECT_EQ(expansion.out, "DAY: 2 intervals\nNIGHT: 1 intervals\n");
  EXPECT_THAT(Column("select sttm from tscalender order by sttm"),
              ElementsAre("2026-11-23 08:00:00", "2026-11-23 22:00:00", "2026-11-24 08:00:00"));
}

}  // namespace
}  // namespace qmx::test
