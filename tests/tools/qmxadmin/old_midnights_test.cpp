// Files of older releases, in which midnights have no time of day: what init, check and verify make of them.
#include "tests/tools/qmxadmin/admin_on_a_system.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class OldMidnights : public AdminOnASystem {
 protected:
  void AddCalendar(const std::string& start, int time, const std::string& end) {
    Execute("insert into tcccp030 (ccal, ract, stdt, sttm, endt, ustm) values ('DAY', 'WRK', '" + start + "', " +
            std::to_string(time) + ", '" + end + "', '2026-11-05 08:00:00')");
  }

  // A file as an older release left it: five midnights without a time of day.
  void FillAsBefore() {
    AddCalendar("2026-11-05", 800, "2026-11-06");
    AddCalendar("2026-11-05", 1300, "2026-11-05");
    Execute("insert into tstables (TableName, lutm) values ('tcccp030', '2026-11-05')");
    Execute("insert into tssoc200 (orno, ordt, stna) values ('B', null, '2026-11-05')");
  }

  std::vector<std::string> Calendars() {
    return Column("select stdt||' '||sttm||' '||endt||' '||ustm from tcccp030 order by stdt, sttm");
  }
};
INSTANTIATE_TEST_SUITE_P(Over, OldMidnights, testing::ValuesIn(DriversUnderTest([](const auto& driver) {
                           return driver.name.starts_with("SQLite");
                         })),
                         [](const auto& info) { return info.param.name; });

TEST_P(OldMidnights, AreRewrittenByInitWhichSaysHowMany) {
  FillAsBefore();
  const Process init = Admin({"init"});
  EXPECT_EQ(init.status, 0) << init.err;
  EXPECT_THAT(init.out,
              AllOf(HasSubstr("tcccp030: 4 midnights of an older release rewritten, as \"2026-11-05 "
                              "00:00:00\" instead of \"2026-11-05\"\n"),
                    HasSubstr("tstables: 1 midnight of an older release rewritten"), Not(HasSubstr("tssoc200: 1"))));
  EXPECT_THAT(Calendars(), ElementsAre("2026-11-05 00:00:00 800 2026-11-06 00:00:00 2026-11-05 08:00:00",
                                       "2026-11-05 00:00:00 1300 2026-11-05 00:00:00 2026-11-05 08:00:00"));
  EXPECT_THAT(Column("select lutm||'' from tstables"), ElementsAre("2026-11-05 00:00:00"));
}

TEST_P(OldMidnights, AreRewrittenOnce) {
  FillAsBefore();
  Admin({"init"});
  const Process again = Admin({"init"});
  EXPECT_EQ(again.status, 0) << again.err;
  EXPECT_THAT(again.out, Not(HasSubstr("rewritten")));
}

TEST_P(OldMidnights, AreRewrittenInMomentColumnsOnly) {
  Execute("insert into tssoc200 (orno, ordt, stna) values ('2026-11-04', '2026-11-05', '2026-11-06')");
  Admin({"init"});
  EXPECT_THAT(Column("select orno||' '||ordt||' '||stna from tssoc200"),
              ElementsAre("2026-11-04 2026-11-05 00:00:00 2026-11-06"));
}

TEST_P(OldMidnights, AreRewrittenInATableThatDiffersToo) {
  Execute("alter table tssoc200 add column checked datetime");
  Execute("insert into tssoc200 (orno, ordt, checked) values ('A', '2026-11-05', '2026-11-06')");
  const Process init = Admin({"init"});
  EXPECT_EQ(init.status, 1) << init.err;
  EXPECT_THAT(init.out, HasSubstr("tssoc200: 1 midnight of an older release rewritten"));
  EXPECT_THAT(Column("select ordt||' '||checked from tssoc200"), ElementsAre("2026-11-05 00:00:00 2026-11-06"));
}

// Only another program can have added the second row.
TEST_P(OldMidnights, StayAllAsTheyAreIfTwoRowsWouldBecomeTheSame) {
  Execute("insert into tssoc200 (orno, ordt) values ('A', '2026-11-05')");
  FillAsBefore();
  AddCalendar("2026-11-05 00:00:00", 800, "2026-11-07 00:00:00");
  const Process init = Admin({"init"});
  EXPECT_EQ(init.status, 2);
  EXPECT_THAT(init.out, Not(HasSubstr("rewritten")));
  EXPECT_THAT(init.err,
              AllOf(HasSubstr("tcccp030"), HasSubstr("copy the table in full, or delete one of them, then run")));
  EXPECT_THAT(Calendars(), ElementsAre("2026-11-05 800 2026-11-06 2026-11-05 08:00:00",
                                       "2026-11-05 1300 2026-11-05 2026-11-05 08:00:00",
                                       "2026-11-05 00:00:00 800 2026-11-07 00:00:00 2026-11-05 08:00:00"));
  EXPECT_THAT(Column("select ordt||'' from tssoc200 where orno = 'A'"), ElementsAre("2026-11-05"));
}

TEST_P(OldMidnights, StayAllAsTheyAreIfOneTableCannotBeWritten) {
  FillAsBefore();
  Execute("create unique index once on tssoc210 (pstm)");
  Execute("insert into tssoc210 (orno, acln, pstm) values ('A', 1, '2026-11-05'), ('A', 2, '2026-11-05 00:00:00')");
  const Process init = Admin({"init"});
  EXPECT_EQ(init.status, 2);
  EXPECT_THAT(init.err, HasSubstr("tssoc210"));
  EXPECT_THAT(init.out, Not(HasSubstr("rewritten")));
  EXPECT_THAT(Calendars(), ElementsAre("2026-11-05 800 2026-11-06 2026-11-05 08:00:00",
                                       "2026-11-05 1300 2026-11-05 2026-11-05 08:00:00"));
}

TEST_P(OldMidnights, AreFoundByCheckWhichSaysWhatToDo) {
  FillAsBefore();
  const Process check = Admin({"check"});
  EXPECT_EQ(check.status, 1);
  EXPECT_THAT(check.out,
              AllOf(HasSubstr("wrong        table tcccp030: 4 midnights have the form of an older release, as "
                              "\"2026-11-05\" instead of \"2026-11-05 00:00:00\", so queries that compare moments may "
                              "miss them. \"qmxadmin init\" rewrites them.\n"),
                    HasSubstr("wrong        table tstables: 1 midnight has the form of an older release"),
                    Not(HasSubstr("table tcccp030: 11 columns, as expected")),
                    HasSubstr("table tssoc200: 32 columns, as expected")));
}

TEST_P(OldMidnights, AreNoFindingAnyMoreAfterInit) {
  FillAsBefore();
  Admin({"init"});
  EXPECT_THAT(Admin({"check"}).out, AllOf(HasSubstr("ok           table tcccp030: 11 columns, as expected"),
                                          Not(HasSubstr("older release"))));
}

}  // namespace
}  // namespace qmx::test
