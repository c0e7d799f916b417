// Calendars by change over an SQLite file: their key holds a midnight, which is stored and found in the form of
// SQLite's datetime(). A file of an older release has midnights without a time of day.
#include "tests/copy/tables/calendar_rig.h"

namespace qmx::test::calendars_moments {
namespace {

const char* const kKeyOfDay20 = " where ccal='DAY' and   ract='WRK' and   stdt='2026-11-20' and   sttm= 800";

class CalendarMoments : public testing::Test {
 protected:
  void SetUp() override {
    if (rig.ConnectionText().find("SQLite") == std::string::npos) GTEST_SKIP() << "Moments are no texts there.";
    rig.Employee("1001", "DAY");
    rig.ErpHas({});
  }

  // Letter by letter.
  std::vector<std::string> Stored() {
    return rig.Rows(
        "(select ccal, stdt||' '||sttm||' to '||endt||' '||entm||', from '||ifnull(ustm,'null') as record "
        "from tcccp030) t",
        {"record"});
  }

  static Getters WithTextDate(Getters record, const char* start) {
    record.insert_or_assign("getStartDate", start);
    return record;
  }

  CalendarRig rig;
};

TEST_F(CalendarMoments, AreStoredInFull) {
  rig.LocalRecord("DAY", "2026-11-19 00:00:00", 800);
  rig.AuditsByCalendar({{Inserted(Interval("DAY", "2026-11-20", 0, "2026-11-21", 2400)),
                         Inserted(WithTextDate(Interval("DAY", "2026-11-22", 800, "2026-11-22", 900), "2026-11-22"))}});
  rig.Run(kCalendars);
  EXPECT_THAT(Stored(),
              ElementsAre("\"2026-11-19 00:00:00 800 to 2026-11-19 00:00:00 1700, from null\"",
                          "\"2026-11-20 00:00:00 0 to 2026-11-21 00:00:00 2400, from 2026-11-20 00:00:00\"",
                          "\"2026-11-22 00:00:00 800 to 2026-11-22 00:00:00 900, from 2026-11-22 08:00:00\""));
}

// What each form of the ERP's start date and of the file's finds.
struct Forms {
  const char* stored;
  Variant asked;
};

TEST_F(CalendarMoments, FindTheRecordThatIsChangedInWhateverFormItIsStoredAndAskedFor) {
  const DateTime day = DateTime::FromDate(2026, 11, 20);
  const std::vector<Forms> forms = {{"2026-11-20 00:00:00", day},
                                    {"2026-11-20 00:00:00", "2026-11-20"},
                                    {"2026-11-20", day},
                                    {"2026-11-20", "2026-11-20"},
                                    {"2026-11-20", "2026-11-20 00:00:00"}};
  for (const Forms& form : forms) {
    rig.Sql("delete from tcccp030");
    rig.Sql("delete from tstables");
    rig.LocalRecord("DAY", form.stored, 800);
    Getters changed = Interval("DAY", "2026-11-20", 800, "2026-11-20", 1200);
    changed.insert_or_assign("getStartDate", form.asked);
    rig.AuditsByCalendar({{Updated(changed)}});
    rig.calls.Clear();
    rig.Run(kCalendars);
    EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-20, 800, 1200"))
        << form.stored << " asked for as " << form.asked.ToText();
    EXPECT_EQ(rig.Events().at(1), "event Complete 2026-11-20 14:05:09, \"tcccp030\", 0, 1, 0");
  }
}

TEST_F(CalendarMoments, FindTheRecordThatIsDeletedInEitherForm) {
  for (const char* stored : {"2026-11-20 00:00:00", "2026-11-20"}) {
    rig.Sql("delete from tcccp030");
    rig.Sql("delete from tstables");
    rig.LocalRecord("DAY", stored, 800);
    rig.LocalRecord("DAY", stored, 1300);
    rig.AuditsByCalendar({{Deleted(Interval("DAY", "2026-11-20", 800, "2026-11-20", 1200))}});
    rig.Run(kCalendars);
    EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-20, 1300, 1700")) << stored;
  }
}

TEST_F(CalendarMoments, AreShownAsBeforeInTheStatements) {
  rig.LocalRecord("DAY", "2026-11-20 00:00:00", 800);
  rig.AuditsByCalendar({{Deleted(Interval("DAY", "2026-11-20", 800, "2026-11-20", 1200))}});
  rig.Run(kCalendars);
  EXPECT_THAT(SqlTexts(rig.calls), ElementsAre(std::string("DELETE FROM tcccp030") + kKeyOfDay20));
}

TEST_F(CalendarMoments, OfTheLastUpdateAreStoredInFullAndReadInEitherForm) {
  for (const char* before : {"2026-11-19", "2026-11-19 00:00:00"}) {
    CalendarRig copy;
    copy.clock.now = DateTime::FromDate(2026, 11, 20);
    copy.ErpHas({});
    copy.AuditsByCalendar({});
    copy.Sql("update tstables set lutm = '" + std::string(before) + "'");
    copy.Run(kCalendars);
    EXPECT_THAT(copy.calls.StartingWith({"date1.set"}),
                ElementsAre("date1.setDate(19)", "date1.setmonth(10)", "date1.setYear(126)", "date1.setHours(0)",
                            "date1.setMinutes(0)", "date1.setSeconds(0)"))
        << before;
    EXPECT_THAT(copy.Rows("(select tablename, lutm||'' as lutm from tstables) t", {"lutm"}),
                ElementsAre("\"2026-11-20 00:00:00\""));
  }
}

}  // namespace
}  // namespace qmx::test::calendars_moments
