#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/calendar/calendar_database.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Expansion : public ::testing::Test {
 protected:
  void SetUp() override { local.Employee("1001", "DAY"); }

  std::vector<std::string> Expanded(const std::vector<CalendarRecord>& records) {
    local.Records("DAY", records);
    EXPECT_TRUE(local.Calender().Startprocess().IsEmpty());
    EXPECT_EQ(local.recordset().State(), kStateClosed);
    return local.Intervals("DAY");
  }

  CalendarDatabase local;
};

TEST_F(Expansion, StartsWithTheZeroDateTimeAndNothingInUse) {
  const clsCalender calender(local.database());
  EXPECT_EQ(calender.startdate.ToText(), "1899-12-30");
  EXPECT_EQ(calender.enddate.ToText(), "1899-12-30");
  EXPECT_EQ(calender.arraycount, 0);
  EXPECT_EQ(calender.calcount, 0);
}

TEST_F(Expansion, CountsTheCalendarsAgainEachTime) {
  local.Employee("1002", "NIGHT");
  clsCalender calender = local.Calender();
  calender.getCalender();
  EXPECT_EQ(calender.calcount, 2);
  local.Execute("delete from tsmdm140 where emno = '1002'");
  calender.getCalender();
  EXPECT_EQ(calender.calcount, 1);
}

TEST_F(Expansion, RepeatsARecordsTimesOnEachOfItsDays) {
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-07", 800, 1700}}),
              ElementsAre("2001-03-05 08:00:00 > 2001-03-05 17:00:00", "2001-03-06 08:00:00 > 2001-03-06 17:00:00",
                          "2001-03-07 08:00:00 > 2001-03-07 17:00:00"));
}

TEST_F(Expansion, WritesMidnightAsTheDateAlone) {
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 0, 2400}}), ElementsAre("2001-03-05 > 2001-03-06"));
  EXPECT_EQ(local.log.Count("connection.Execute insert into tscalender (ccal,sttm,entm) Values "
                            "('DAY','2001-03-05','2001-03-06')"),
            1u);
}

TEST_F(Expansion, EndsAtMidnightAlsoOnTheLastDayOfAYear) {
  EXPECT_THAT(Expanded({{"2001-12-31", "2001-12-31", 2200, 2400}}), ElementsAre("2001-12-31 22:00:00 > 2002-01-01"));
}

TEST_F(Expansion, DropsMinutesGivenWithHour24OfAnEnd) {
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 2200, 2430}}), ElementsAre("2001-03-05 22:00:00 > 2001-03-06"));
}

TEST_F(Expansion, CarriesAStartAtHour24ToTheNextDayWithItsMinutes) {
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 2430, 2500}}),
              ElementsAre("2001-03-06 00:30:00 > 2001-03-06 01:00:00"));
}

TEST_F(Expansion, WritesAShiftOverMidnightWithBothTimesOnTheSameDay) {
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 2200, 600}}),
              ElementsAre("2001-03-05 22:00:00 > 2001-03-05 06:00:00"));
}

TEST_F(Expansion, IgnoresARecordThatEndsBeforeItStarts) {
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-04", 800, 1700}, {"2001-03-06", "2001-03-06", 900, 1000}}),
              ElementsAre("2001-03-06 09:00:00 > 2001-03-06 10:00:00"));
}

TEST_F(Expansion, IgnoresTheAvailabilityType) {
  local.Execute("INSERT INTO tcccp030 VALUES ('DAY', 'HOLIDAY', '2001-03-05', 800, '2001-03-05', 1700)");
  EXPECT_THAT(Expanded({}), ElementsAre("2001-03-05 08:00:00 > 2001-03-05 17:00:00"));
}

TEST_F(Expansion, KeepsTheOrderInWhichDaysAreFirstMet) {
  EXPECT_THAT(Expanded({{"2001-03-07", "2001-03-07", 800, 900},
                        {"2001-03-05", "2001-03-05", 1300, 1400},
                        {"2001-03-05", "2001-03-08", 800, 900}}),
              ElementsAre("2001-03-05 08:00:00 > 2001-03-05 09:00:00", "2001-03-05 13:00:00 > 2001-03-05 14:00:00",
                          "2001-03-06 08:00:00 > 2001-03-06 09:00:00", "2001-03-07 08:00:00 > 2001-03-07 09:00:00",
                          "2001-03-08 08:00:00 > 2001-03-08 09:00:00"));
}

TEST_F(Expansion, KeepsOverlapsThatMergingKeeps) {
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 800, 1200},
                        {"2001-03-05", "2001-03-05", 1100, 1400},
                        {"2001-03-04", "2001-03-05", 1300, 1700}}),
              ElementsAre("2001-03-04 13:00:00 > 2001-03-04 17:00:00", "2001-03-05 08:00:00 > 2001-03-05 14:00:00",
                          "2001-03-05 13:00:00 > 2001-03-05 17:00:00"));
}

TEST_F(Expansion, EndsAtThePeriodInWhichNoRecordStarts) {
  EXPECT_THAT(Expanded({{"2001-01-10", "2001-01-10", 800, 900}, {"2001-08-01", "2001-08-01", 800, 900}}),
              ElementsAre("2001-01-10 08:00:00 > 2001-01-10 09:00:00"));
}

TEST_F(Expansion, GoesOnWhileEveryPeriodHasARecordThatStarts) {
  EXPECT_THAT(Expanded({{"2001-01-10", "2001-01-10", 800, 900}, {"2001-05-01", "2001-05-01", 800, 900}}),
              ElementsAre("2001-01-10 08:00:00 > 2001-01-10 09:00:00", "2001-05-01 08:00:00 > 2001-05-01 09:00:00"));
}

// The first period is (2001-01-09, 2001-04-19], the second (2001-04-19, 2001-07-28].
TEST_F(Expansion, TakesAPeriodsLastDayAndNotTheDayBeforeItsFirst) {
  EXPECT_THAT(Expanded({{"2001-01-10", "2001-01-10", 800, 900},
                        {"2001-04-19", "2001-04-19", 800, 900},
                        {"2001-04-20", "2001-04-20", 800, 900},
                        {"2001-07-28", "2001-07-28", 800, 900}}),
              ElementsAre("2001-01-10 08:00:00 > 2001-01-10 09:00:00", "2001-04-19 08:00:00 > 2001-04-19 09:00:00",
                          "2001-04-20 08:00:00 > 2001-04-20 09:00:00", "2001-07-28 08:00:00 > 2001-07-28 09:00:00"));
  EXPECT_EQ(local.log.Count("rs1.Open \"select *  from tcccp030 where tcccp030.ccal = 'DAY' and tcccp030.stdt > "
                            "'2001-04-19' and tcccp030.stdt <= '2001-07-28' order by tcccp030.stdt, tcccp030.sttm "
                            "\" 1 3 1"),
            1u);
}

TEST_F(Expansion, DoesNotCombineTheRecordsOfTwoPeriodsOnOneDay) {
  EXPECT_THAT(Expanded({{"2001-01-10", "2001-01-10", 800, 900},
                        {"2001-04-19", "2001-04-20", 800, 1200},
                        {"2001-04-20", "2001-04-20", 1200, 1700}}),
              ElementsAre("2001-01-10 08:00:00 > 2001-01-10 09:00:00", "2001-04-19 08:00:00 > 2001-04-19 12:00:00",
                          "2001-04-20 08:00:00 > 2001-04-20 12:00:00", "2001-04-20 12:00:00 > 2001-04-20 17:00:00"));
}

TEST_F(Expansion, ExpandsTheLeapDayAndTheTurnOfTheYear) {
  EXPECT_THAT(Expanded({{"2023-12-31", "2024-01-01", 800, 900}, {"2024-02-28", "2024-03-01", 800, 900}}),
              ElementsAre("2023-12-31 08:00:00 > 2023-12-31 09:00:00", "2024-01-01 08:00:00 > 2024-01-01 09:00:00",
                          "2024-02-28 08:00:00 > 2024-02-28 09:00:00", "2024-02-29 08:00:00 > 2024-02-29 09:00:00",
                          "2024-03-01 08:00:00 > 2024-03-01 09:00:00"));
}

TEST_F(Expansion, KeepsTheDaysOfARecordLongerThanAYearApart) {
  const std::vector<std::string> intervals = Expanded({{"2001-03-05", "2002-03-06", 800, 1700}});
  ASSERT_EQ(intervals.size(), 367u);
  EXPECT_EQ(intervals[0], "2001-03-05 08:00:00 > 2001-03-05 17:00:00");
  EXPECT_EQ(intervals[364], "2002-03-04 08:00:00 > 2002-03-04 17:00:00");
  EXPECT_EQ(intervals[365], "2002-03-05 08:00:00 > 2002-03-05 17:00:00");
  EXPECT_EQ(intervals[366], "2002-03-06 08:00:00 > 2002-03-06 17:00:00");
}

TEST_F(Expansion, ReplacesTheOldRowsOfACalendarInUseAndKeepsThoseOfOthers) {
  local.Execute("INSERT INTO tscalender VALUES ('DAY', '1999-01-01', '1999-01-02')");
  local.Execute("INSERT INTO tscalender VALUES ('UNUSED', '1999-01-01', '1999-01-02')");
  local.Record("UNUSED", {"2001-03-05", "2001-03-05", 800, 1700});
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 800, 1700}}),
              ElementsAre("2001-03-05 08:00:00 > 2001-03-05 17:00:00"));
  EXPECT_THAT(local.Intervals("UNUSED"), ElementsAre("1999-01-01 > 1999-01-02"));
}

TEST_F(Expansion, DeletesTheRowsOfACalendarWithoutRecords) {
  local.Execute("INSERT INTO tscalender VALUES ('DAY', '1999-01-01', '1999-01-02')");
  EXPECT_THAT(Expanded({}), IsEmpty());
}

TEST_F(Expansion, DeletesTheRowsOfABlankCodeAndExpandsNothingForIt) {
  local.Employee("1002", "  ");
  local.Execute("INSERT INTO tscalender VALUES ('  ', '1999-01-01', '1999-01-02')");
  local.Record("  ", {"2001-03-05", "2001-03-05", 800, 1700});
  EXPECT_THAT(Expanded({}), IsEmpty());
  EXPECT_THAT(local.Intervals("  "), IsEmpty());
}

TEST_F(Expansion, ExpandsACalendarOfSeveralEmployeesOnce) {
  local.Employee("1002", "DAY");
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 800, 1700}}),
              ElementsAre("2001-03-05 08:00:00 > 2001-03-05 17:00:00"));
}

TEST_F(Expansion, ExpandsNothingIfNoEmployeeHasACalendar) {
  local.Execute("UPDATE tsmdm140 SET ccal = ''");
  local.Employee("1002", "");
  local.Execute("INSERT INTO tsmdm140 VALUES ('1003', NULL)");
  EXPECT_THAT(Expanded({{"2001-03-05", "2001-03-05", 800, 1700}}), IsEmpty());
  EXPECT_THAT(local.log.Lines(), ElementsAre("rs1.Open \"select DISTINCT tsmdm140.ccal  from tsmdm140 WHERE "
                                             "tsmdm140.ccal <>  '' \" 1 3 1",
                                             "rs1.Close"));
}

TEST_F(Expansion, RunsItsStatementsLetterForLetterAndInOrder) {
  local.Employee("1002", "NIGHT");
  Expanded({{"2001-03-05", "2001-03-05", 800, 1700}});
  const char* codes = "rs1.Open \"select DISTINCT tsmdm140.ccal  from tsmdm140 WHERE tsmdm140.ccal <>  '' \" 1 3 1";
  EXPECT_THAT(
      local.log.Lines(),
      ElementsAre(
          codes, "rs1.MoveFirst", "rs1.MoveNext", "rs1.MoveNext", "rs1.Close", "connection.CommandTimeout 150",
          "connection.Execute  delete from tscalender where tscalender.ccal = 'DAY'",
          "rs1.Open \"select min(tcccp030.stdt)  from tcccp030 where tcccp030.ccal = 'DAY'\" 1 3 1", "rs1.Close",
          "rs1.Open \"select *  from tcccp030 where tcccp030.ccal = 'DAY' and tcccp030.stdt > '2001-03-04' and "
          "tcccp030.stdt <= '2001-06-12' order by tcccp030.stdt, tcccp030.sttm \" 1 3 1",
          "rs1.MoveFirst", "rs1.MoveNext", "rs1.Close",
          "connection.Execute insert into tscalender (ccal,sttm,entm) Values ('DAY','2001-03-05 08:00:00','2001-03-05 "
          "17:00:00')",
          "rs1.Open \"select *  from tcccp030 where tcccp030.ccal = 'DAY' and tcccp030.stdt > '2001-06-12' and "
          "tcccp030.stdt <= '2001-09-20' order by tcccp030.stdt, tcccp030.sttm \" 1 3 1",
          "rs1.Close", "connection.CommandTimeout 150",
          "connection.Execute  delete from tscalender where tscalender.ccal = 'NIGHT'",
          "rs1.Open \"select min(tcccp030.stdt)  from tcccp030 where tcccp030.ccal = 'NIGHT'\" 1 3 1", "rs1.Close"));
}

TEST_F(Expansion, NeedsNoCalendarOfItsOwnToListThoseInUse) {
  local.Employee("1002", "NIGHT");
  local.Employee("1003", "");
  std::vector<std::string> codes = {"already there"};
  clsCalender calender(local.database());
  calender.getEmployeeCalenderList(local.connection(), codes);
  EXPECT_THAT(codes, ElementsAre("already there", "DAY", "NIGHT"));
  EXPECT_THAT(local.log.Lines(), ElementsAre("rs2.Open \"select DISTINCT tsmdm140.ccal  from tsmdm140 WHERE "
                                             "tsmdm140.ccal <>  '' \" 1 3 1",
                                             "rs2.MoveFirst", "rs2.MoveNext", "rs2.MoveNext", "rs2.Close"));
}

}  // namespace
}  // namespace qmx::test
