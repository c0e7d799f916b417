// What ends quietly, and what does not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/calendar/calendar_database.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ExpansionFailure : public ::testing::Test {
 protected:
  void SetUp() override {
    local.Employee("1001", "DAY");
    local.Record("DAY", {"2001-03-05", "2001-03-07", 800, 1700});
  }
  CalendarDatabase local;
};

TEST_F(ExpansionFailure, BeforeACalendarLeavesItAndThoseAfterItUnchanged) {
  local.Employee("1002", "NIGHT");
  local.Record("NIGHT", {"2001-03-05", "2001-03-05", 2000, 2400});
  local.Execute("INSERT INTO tscalender VALUES ('NIGHT', '1999-01-01', '1999-01-02')");
  clsCalender calender = local.Calender();
  std::vector<std::string> begun;
  calender.BeforeCalendar = [&] {
    begun.push_back(calender.Calcode);
    if (begun.size() == 2) throw Error(18, "Interrupted", "Enough.");
  };
  const Error error = Raised([&] { calender.Startprocess(); });
  EXPECT_EQ(error.Description(), "Enough.");
  EXPECT_THAT(begun, ElementsAre("DAY", "NIGHT"));
  EXPECT_EQ(local.Intervals("DAY").size(), 3U);
  EXPECT_THAT(local.Intervals("NIGHT"), ElementsAre("1999-01-01 > 1999-01-02"));
}

TEST_F(ExpansionFailure, LosesOnlyTheRowWhoseInsertFails) {
  local.Execute(
      "CREATE TRIGGER refuse BEFORE INSERT ON tscalender WHEN NEW.sttm LIKE '2001-03-06%' "
      "BEGIN SELECT RAISE(ABORT, 'refused'); END");
  local.Calender().Startprocess();
  EXPECT_THAT(local.Intervals("DAY"),
              ElementsAre("2001-03-05 08:00:00 > 2001-03-05 17:00:00", "2001-03-07 08:00:00 > 2001-03-07 17:00:00"));
}

TEST(ExpansionOfManyDays, LosesOnlyTheRowsWhoseInsertFailsAndKeepsTheOrder) {
  CalendarDatabase local({}, {}, Calls::NotLogged);
  local.Employee("1001", "DAY");
  local.Record("DAY", {"2001-01-01", "2001-12-31", 800, 1700});
  local.Execute(
      "CREATE TRIGGER refuse BEFORE INSERT ON tscalender WHEN NEW.sttm LIKE '2001-01-01%' OR NEW.sttm LIKE "
      "'2001-07-1%' OR NEW.sttm LIKE '2001-12-31%' BEGIN SELECT RAISE(ABORT, 'refused'); END");
  local.Calender().Startprocess();
  const std::vector<std::string> intervals = local.Intervals("DAY");
  EXPECT_EQ(intervals.size(), 365U - 12);
  EXPECT_TRUE(std::is_sorted(intervals.begin(), intervals.end()));
  EXPECT_EQ(intervals.front(), "2001-01-02 08:00:00 > 2001-01-02 17:00:00");
  EXPECT_EQ(intervals.back(), "2001-12-30 08:00:00 > 2001-12-30 17:00:00");
}

TEST_F(ExpansionFailure, LeavesTheOldRowsAndExpandsBesideThemWhenTheDeleteFails) {
  local.Execute("INSERT INTO tscalender VALUES ('DAY', '1999-01-01', '1999-01-02')");
  local.Execute("CREATE TRIGGER refuse BEFORE DELETE ON tscalender BEGIN SELECT RAISE(ABORT, 'refused'); END");
  local.Calender().Startprocess();
  EXPECT_THAT(local.Intervals("DAY"),
              ElementsAre("1999-01-01 > 1999-01-02", "2001-03-05 08:00:00 > 2001-03-05 17:00:00",
                          "2001-03-06 08:00:00 > 2001-03-06 17:00:00", "2001-03-07 08:00:00 > 2001-03-07 17:00:00"));
}

TEST_F(ExpansionFailure, SkipsACalendarWhoseRecordsCannotBeRead) {
  local.Execute("INSERT INTO tscalender VALUES ('DAY', '1999-01-01', '1999-01-02')");
  local.Execute("DROP TABLE tcccp030");
  EXPECT_NO_THROW(local.Calender().Startprocess());
  EXPECT_THAT(local.Intervals("DAY"), IsEmpty());
  EXPECT_EQ(local.recordset().State(), kStateClosed);
}

TEST_F(ExpansionFailure, StopsACalendarWhosePeriodCannotBeRead) {
  clsCalender calender = local.Calender();
  calender.Calcode = "DAY";
  local.Execute("ALTER TABLE tcccp030 RENAME COLUMN sttm TO other");
  ASSERT_TRUE(calender.GetFirstYearofCalcode());
  EXPECT_EQ(calender.GetRecords(), -1);
  EXPECT_EQ(local.recordset().State(), kStateClosed);
  EXPECT_NO_THROW(calender.Startprocess());
}

TEST_F(ExpansionFailure, ExpandsNothingWhenTheCodesCannotBeRead) {
  local.Execute("INSERT INTO tscalender VALUES ('DAY', '1999-01-01', '1999-01-02')");
  local.Execute("DROP TABLE tsmdm140");
  clsCalender calender = local.Calender();
  EXPECT_NO_THROW(calender.Startprocess());
  EXPECT_EQ(calender.calcount, 0);
  EXPECT_THAT(local.Intervals("DAY"), ElementsAre("1999-01-01 > 1999-01-02"));

  std::vector<std::string> codes;
  EXPECT_NO_THROW(calender.getEmployeeCalenderList(local.connection(), codes));
  EXPECT_THAT(codes, IsEmpty());
}

TEST_F(ExpansionFailure, ClosesARecordSetThatSomebodyLeftOpenAndSkipsTheCalendar) {
  local.recordset().Open("select * from tsmdm140", local.connection(), kCursorKeyset, kLockOptimistic, kCommandText);
  clsCalender calender = local.Calender();
  calender.Calcode = "DAY";
  EXPECT_FALSE(calender.GetFirstYearofCalcode());
  EXPECT_EQ(local.recordset().State(), kStateClosed);
  EXPECT_TRUE(calender.GetFirstYearofCalcode());
}

TEST_F(ExpansionFailure, ExpandsNothingWithoutAConnectionOrARecordSet) {
  clsCalender without(local.database());
  EXPECT_NO_THROW(without.Startprocess());
  clsCalender halfWay = local.Calender();
  halfWay.DBRecordSet = nullptr;
  EXPECT_NO_THROW(halfWay.Startprocess());
  EXPECT_THAT(local.log.Lines(), IsEmpty());
  halfWay.Calcode = "DAY";
  EXPECT_FALSE(halfWay.GetFirstYearofCalcode());
  EXPECT_EQ(halfWay.GetRecords(), -1);
}

TEST_F(ExpansionFailure, SkipsACodeThatHoldsAQuoteAndGoesOnWithTheNext) {
  local.Employee("1000", "A''B");
  local.Execute("INSERT INTO tscalender VALUES ('A''B', '1999-01-01', '1999-01-02')");
  local.Calender().Startprocess();
  EXPECT_EQ(local.Intervals("A''B").size(), 1u);
  EXPECT_EQ(local.Intervals("DAY").size(), 3u);
}

TEST_F(ExpansionFailure, RaisesForATimeThatDoesNotFit16Bits) {
  local.Employee("1002", "LATER");
  local.Record("LATER", {"2001-03-05", "2001-03-05", 800, 1700});
  local.Record("DAY", {"2001-03-08", "2001-03-08", 800, 32768});
  EXPECT_EQ(Raised([&] { local.Calender().Startprocess(); }).Number(), 6);
  EXPECT_THAT(local.Intervals("DAY"), IsEmpty());
  EXPECT_THAT(local.Intervals("LATER"), IsEmpty());
}

TEST_F(ExpansionFailure, RaisesForARecordWithoutAnEnd) {
  local.Execute("INSERT INTO tcccp030 VALUES ('DAY', 'WRK', '2001-03-08', 800, NULL, 1700)");
  const Error error = Raised([&] { local.Calender().Startprocess(); });
  EXPECT_EQ(error.Number(), 94);
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{
                                 {"calendar", "DAY"},
                                 {"record", "stdt=2001-03-08, sttm=800, ract='WRK'"},
                                 {"what to do", "copy this calendar again as tcccp030=DAY=C, then expand again"}}));
}

TEST_F(ExpansionFailure, LeavesNoDaysForTheNextExpansion) {
  local.Execute("INSERT INTO tcccp030 VALUES ('DAY', 'WRK', '2001-03-08', 800, NULL, 1700)");
  clsCalender calender = local.Calender();
  EXPECT_EQ(Raised([&] { calender.Startprocess(); }).Number(), 94);
  local.recordset().Close();

  local.Execute("DELETE FROM tcccp030");
  local.Record("DAY", {"2001-09-01", "2001-09-01", 900, 1000});
  calender.Startprocess();
  EXPECT_THAT(local.Intervals("DAY"), ElementsAre("2001-09-01 09:00:00 > 2001-09-01 10:00:00"));
}

TEST_F(ExpansionFailure, KeepsTheIntervalsOfEarlierPeriodsWhenALaterOneFails) {
  local.Record("DAY", {"2001-07-01", "2001-07-01", 800, 40000});
  EXPECT_EQ(Raised([&] { local.Calender().Startprocess(); }).Number(), 6);
  EXPECT_EQ(local.Intervals("DAY").size(), 3u);
}

}  // namespace
}  // namespace qmx::test
