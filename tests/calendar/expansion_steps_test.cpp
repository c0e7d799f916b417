// The single steps of an expansion: periods, counting, the days in memory.
#include <gtest/gtest.h>

#include "tests/calendar/calendar_database.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

DateTime At(const char* text) { return DateTime::Parse(text).value(); }

class ExpansionSteps : public ::testing::Test {
 protected:
  CalendarDatabase local;
  clsCalender calender = local.Calender();
};

TEST_F(ExpansionSteps, MovesThePeriodBy100Days) {
  calender.Mindate = At("2001-01-09");
  calender.initialize();
  EXPECT_EQ(calender.seledate.ToText(), "2001-01-09");
  calender.IncrementDate();
  EXPECT_EQ(calender.startdate.ToText(), "2001-01-09");
  EXPECT_EQ(calender.enddate.ToText(), "2001-04-19");
  calender.IncrementDate();
  EXPECT_EQ(calender.startdate.ToText(), "2001-04-19");
  EXPECT_EQ(calender.enddate.ToText(), "2001-07-28");
  EXPECT_EQ(calender.seledate.ToText(), "2001-07-28");
}

TEST_F(ExpansionSteps, CountsBothEndsOfARange) {
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-05")), 1);
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-07")), 3);
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-04")), 0);
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-01")), -3);
}

TEST_F(ExpansionSteps, RoundsPartsOfADayHalfToEven) {
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-05 11:59:59")), 1);
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-05 12:00:00")), 2);
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-06 12:00:00")), 2);
  EXPECT_EQ(calender.GetCount(At("2001-03-05"), At("2001-03-06 12:00:01")), 3);
  EXPECT_EQ(calender.GetCount(At("2001-03-05 12:00:00"), At("2001-03-05")), 0);
  EXPECT_EQ(calender.GetCount(At("2001-03-05 12:00:00"), At("2001-03-04")), 0);
  EXPECT_EQ(calender.GetCount(At("2001-03-05 12:00:00"), At("2001-03-03")), -2);
}

TEST_F(ExpansionSteps, FindsADayByAllOfItsParts) {
  calender.InsertInMainArray(5, 3, 2001, 800, 1700);
  calender.InsertInMainArray(5, 3, 2002, 800, 1700);
  std::int16_t pos = 7;
  EXPECT_FALSE(calender.Present_in_Main_Array(5, 4, 2001, pos));
  EXPECT_FALSE(calender.Present_in_Main_Array(6, 3, 2001, pos));
  EXPECT_EQ(pos, 7);
  EXPECT_TRUE(calender.Present_in_Main_Array(5, 3, 2001, pos));
  EXPECT_EQ(pos, 0);
  EXPECT_TRUE(calender.Present_in_Main_Array(5, 3, 2002, pos));
  EXPECT_EQ(pos, 1);
  calender.arraycount = 0;
  EXPECT_FALSE(calender.Present_in_Main_Array(5, 3, 2001, pos));
  EXPECT_EQ(pos, 1);
}

TEST_F(ExpansionSteps, AppendsADayAfterThoseInUse) {
  EXPECT_EQ(calender.InsertInMainArray(5, 3, 2001, 800, 1700), 1);
  calender.arraycount = 0;
  EXPECT_EQ(calender.InsertInMainArray(6, 3, 2001, 900, 1000), 1);
  EXPECT_EQ(calender.arraycount, 1);
  EXPECT_EQ(calender.Day(0).day, 6);
  EXPECT_EQ(Raised([&] { calender.Day(1); }).Number(), 9);
}

TEST_F(ExpansionSteps, OverflowsAt32768Days) {
  for (int i = 0; i < 32767; ++i) calender.InsertInMainArray(1, 1, 2001, 800, 1700);
  EXPECT_EQ(calender.arraycount, 32767);
  EXPECT_EQ(Raised([&] { calender.InsertInMainArray(1, 1, 2001, 800, 1700); }).Number(), 6);
}

TEST_F(ExpansionSteps, OverflowsWhileTheRecordsOfAPeriodAreSpread) {
  for (int i = 0; i < 32766; ++i) calender.InsertInMainArray(1, 1, 1901, 800, 1700);
  local.Record("DAY", {"2001-03-05", "2001-03-06", 800, 1700});
  calender.Calcode = "DAY";
  calender.startdate = At("2001-03-01");
  calender.enddate = At("2001-06-01");
  ASSERT_EQ(calender.GetRecords(), 1);
  EXPECT_EQ(Raised([&] { calender.process(); }).Number(), 6);
}

TEST_F(ExpansionSteps, ReturnsWhetherThePeriodHasRecords) {
  local.Record("DAY", {"2001-03-05", "2001-03-05", 800, 1700});
  calender.Calcode = "DAY";
  EXPECT_TRUE(calender.GetFirstYearofCalcode());
  EXPECT_EQ(calender.Mindate.ToText(), "2001-03-04");
  calender.initialize();
  calender.IncrementDate();
  EXPECT_EQ(calender.GetRecords(), 1);
  EXPECT_EQ(local.recordset().State(), kStateOpen);
  local.recordset().Close();
  calender.IncrementDate();
  EXPECT_EQ(calender.GetRecords(), 2);
  EXPECT_EQ(local.recordset().State(), kStateClosed);
}

TEST_F(ExpansionSteps, SkipsACodeThatIsBlankOrHasNoRecords) {
  for (const char* code : {"", "   "}) local.Record(code, {"2001-03-05", "2001-03-05", 800, 1700});
  for (const char* code : {"", "   ", "NONE"}) {
    calender.Calcode = code;
    EXPECT_FALSE(calender.GetFirstYearofCalcode()) << "'" << code << "'";
    EXPECT_EQ(local.recordset().State(), kStateClosed);
    EXPECT_FALSE(calender.mainfunction());
    EXPECT_TRUE(local.Intervals(code).empty());
  }
}

TEST_F(ExpansionSteps, FindsACodeWithItsBlanks) {
  local.Record(" D ", {"2001-03-05", "2001-03-05", 800, 1700});
  calender.Calcode = " D ";
  EXPECT_TRUE(calender.GetFirstYearofCalcode());
}

TEST_F(ExpansionSteps, WritesEveryIntervalOfEveryDay) {
  calender.Calcode = "DAY";
  calender.InsertInMainArray(5, 3, 2001, 800, 1200);
  calender.CheckSubAndInsertModify(0, 1300, 1700);
  calender.InsertInMainArray(6, 3, 2001, 900, 1000);
  EXPECT_EQ(calender.InsertInDataBase(), 0);
  EXPECT_EQ(local.Intervals("DAY"), (std::vector<std::string>{"2001-03-05 08:00:00 > 2001-03-05 12:00:00",
                                                              "2001-03-05 13:00:00 > 2001-03-05 17:00:00",
                                                              "2001-03-06 09:00:00 > 2001-03-06 10:00:00"}));
}

TEST_F(ExpansionSteps, RaisesForADayThatIsMissingWhenTheDaysAreWritten) {
  calender.Calcode = "DAY";
  calender.InsertInMainArray(5, 3, 2001, 800, 1200);
  calender.arraycount = 2;
  EXPECT_EQ(Raised([&] { calender.InsertInDataBase(); }).Number(), 9);
}

// -30 is hour -1 and 70 minutes.
TEST_F(ExpansionSteps, RoundsATimeBelowMidnightDownToItsHour) {
  calender.Calcode = "DAY";
  calender.InsertInMainArray(5, 3, 2001, -130, -30);
  calender.InsertInMainArray(6, 3, 2001, -100, 100);
  EXPECT_EQ(calender.InsertInDataBase(), 0);
  EXPECT_EQ(local.Intervals("DAY"), (std::vector<std::string>{"2001-03-04 23:10:00 > 2001-03-05 00:10:00",
                                                              "2001-03-05 23:00:00 > 2001-03-06 01:00:00"}));
}

TEST_F(ExpansionSteps, SkipsAnIntervalThatDoesNotExist) {
  calender.Calcode = "DAY";
  calender.InsertInMainArray(5, 3, 2001, 800, 1200);
  EXPECT_TRUE(calender.Insert(0, 1).IsEmpty());
  EXPECT_TRUE(calender.Insert(1, 0).IsEmpty());
  EXPECT_TRUE(calender.Insert(-1, 0).IsEmpty());
  EXPECT_TRUE(local.Intervals("DAY").empty());
}

}  // namespace
}  // namespace qmx::test
