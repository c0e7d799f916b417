// The calendar of one employee and one calendar by its code: tcccp030=4711=E and tcccp030=DAY=C.
#include "tests/copy/tables/calendar_rig.h"

namespace qmx::test::calendars_on_request {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const char* const kStarted = "event Started 2026-11-20 14:05:09, \"tcccp030\"";

struct OnRequest : testing::Test {
  void SetUp() override {
    rig.Employee("4711", "DAY");
    rig.LocalRecord("DAY", "2026-11-01", 800);
    rig.LocalRecord("NIGHT", "2026-11-01", 800);
    rig.ErpHas({{"DAY", {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630)}}, {"EMPTY", {}}});
  }
  std::string Failure() { return rig.failures.chains.empty() ? "" : rig.failures.chains[0]; }

  CalendarRig rig;
};

TEST_F(OnRequest, CopiesAnEmployeesCalendarInThisOrder) {
  rig.Run("tcccp030=4711=E");
  EXPECT_THAT(rig.CallsOfTheCopy(),
              ElementsAre("rs5.Open \"select * from tsmdm140 where emno = '4711'\" 1 3 1", "rs5.Close",  //
                          "create Calendars.CalendarManager",                                            //
                          "manager.initialize(\"Orvan, main\")",                                         //
                          "manager.listActualCalendar(\"DAY\", \"DAY\", \"\", \"ZZZZZZZZZ\", \"2026-9-21\", "
                          "\"2038-11-20\", 0, 2400)",
                          "connection.CommandTimeout 150",                                     //
                          "connection.Execute DELETE FROM tcccp030 WHERE ccal = 'DAY'",        //
                          "rs1.Open \"select * from tcccp030 where ccal = 'DAY'\" 1 3 1",      //
                          "listing.hasMoreElements()", "listing.nextElement()",                //
                          "rs1.AddNew",                                                        //
                          "listed1.getCalendar()", "rs1.ccal = \"DAY\"",                       //
                          "listed1.getavailabilityType()", "rs1.ract = \"WRK\"",               //
                          "listed1.getStartDate()", "rs1.stdt = 2026-11-20",                   //
                          "listed1.getStartTime()", "rs1.sttm = 800",                          //
                          "listed1.getEndDate()", "rs1.endt = 2026-11-20",                     //
                          "listed1.getEndTime()", "rs1.entm = 1630",                           //
                          "listed1.getCumulativeTime()", "rs1.cutm = 8.5",                     //
                          "listed1.getCumulativeCapacity()", "rs1.ccap = 2.0",                 //
                          "rs1.ustm = 2026-11-20 08:00:00", "rs1.uftm = 2026-11-20 16:30:00",  //
                          "rs1.ahrs = \"8 Hours 30 Minutes\"",                                 //
                          "listing.hasMoreElements()",                                         //
                          "rs1.Update", "rs1.Close",                                           //
                          "log \"Date-Time :2026-11-20 : 14:05:09\"",                          //
                          "log \"Table : tcccp030 - 1 records Inserted\"",                     //
                          "manager.Close()"));
  EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-20, 800, 1630", "\"NIGHT\", 2026-11-01, 800, 1700"));
  EXPECT_THAT(rig.Events(), ElementsAre(kStarted, kStarted, "event Complete 2026-11-20 14:05:09, \"tcccp030\", 1, 0, 0",
                                        "event done"));
}

TEST_F(OnRequest, CopiesACalendarByItsCodeInTheSameWay) {
  rig.Run("tcccp030=DAY=C");
  EXPECT_EQ(rig.CallsOfTheCopy().front(), "create Calendars.CalendarManager");
  EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-20, 800, 1630", "\"NIGHT\", 2026-11-01, 800, 1700"));
}

TEST_F(OnRequest, NeverTouchesTheLastUpdateTime) {
  rig.ControlRecord(kCalendars, kOnlyChanged, "2026-01-01");
  for (const char* request : {"tcccp030=4711=E", "tcccp030=DAY=C"}) {
    rig.calls.Clear();
    rig.Run(request);
    EXPECT_EQ(rig.Events().at(2), "event Complete 2026-11-20 14:05:09, \"tcccp030\", 1, 0, 0") << request;
    EXPECT_EQ(rig.Lutm(kCalendars), "2026-01-01") << request;
  }
}

TEST_F(OnRequest, LooksBack60DaysWhateverTheSettingsFileSays) {
  rig.files.texts["\\home\\qmx\\QMX_CAL.INI"] = "days=5";
  rig.Run("tcccp030=DAY=C");
  EXPECT_THAT(rig.calls.StartingWith({"manager.list"}), ElementsAre(HasSubstr("\"2026-9-21\", \"2038-11-20\"")));
}

TEST_F(OnRequest, TrimsTheEmployeeNumberAndTheCalendar) {
  rig.Sql("update tsmdm140 set ccal = ' DAY  '");
  rig.Run("tcccp030=  4711 =E");
  EXPECT_EQ(rig.CallsOfTheCopy().front(), "rs5.Open \"select * from tsmdm140 where emno = '4711'\" 1 3 1");
  EXPECT_EQ(rig.calls.Count("connection.Execute DELETE FROM tcccp030 WHERE ccal = 'DAY'"), 1u);
}

TEST_F(OnRequest, DoesNothingForAnEmployeeWithoutARowOrACalendar) {
  rig.Employee("4712", "");
  rig.Employee("4713", "   ");
  rig.Sql("insert into tsmdm140 (emno, ccal) values ('4714', null)");
  for (const char* employee : {"4712", "4713", "4714", "unknown"}) {
    rig.calls.Clear();
    rig.Run(std::string("tcccp030=") + employee + "=E");
    EXPECT_EQ(rig.CallsOfTheCopy().size(), 2u) << employee;
    EXPECT_EQ(rig.CopyLog(kCalendars), "") << employee;
    EXPECT_EQ(rig.Events().at(2), "event Complete 2026-11-20 14:05:09, \"tcccp030\", 0, 0, 0");
  }
  EXPECT_EQ(rig.LocalRecords().size(), 2u);
}

TEST_F(OnRequest, EmptiesACalendarThatTheErpListsWithoutRecords) {
  rig.LocalRecord("EMPTY", "2026-11-01", 800);
  rig.Run("tcccp030=EMPTY=C");
  EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-01, 800, 1700", "\"NIGHT\", 2026-11-01, 800, 1700"));
  EXPECT_EQ(rig.calls.Count("rs1.Update"), 0u);
  EXPECT_EQ(rig.CopyLog(kCalendars),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Table : tcccp030 - 0 records Inserted\"\r\n");
}

// The record set was never opened, so asking for its rows is an error.
TEST_F(OnRequest, FailsAndDeletesNothingForACalendarThatTheErpDoesNotList) {
  rig.Run("tcccp030=NIGHT=C");
  EXPECT_THAT(
      Failure(),
      StartsWith("error 3804, Copy Calender Of Employee:  Copy of Calender Of Employee from Orvan to Local DB failed"));
  EXPECT_EQ(rig.CopyLog(kCalendars),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Copy Calender Of Employee\",\" Copy of Calender Of Employee from Orvan to Local DB failed\"\r\n");
  EXPECT_EQ(rig.LocalRecords().size(), 2u);
  EXPECT_EQ(rig.calls.Count("manager.Close()"), 1u);
  EXPECT_EQ(rig.Events().at(2),
            "event Error 2026-11-20 14:05:09, \"tcccp030\", -1, \"DataCopy Failed, see logfile "
            "'C:\\log\\tcccp030.log' for details\"");
  EXPECT_EQ(rig.InUse(kCalendars), "0");
}

TEST_F(OnRequest, FailsTwiceOverForAnEmployeesCalendarThatTheErpDoesNotList) {
  rig.Employee("4712", "NIGHT");
  rig.Run("tcccp030=4712=E");
  EXPECT_THAT(
      Failure(),
      StartsWith("error 3904, Copy Calendar of Employee:  Copy of Calendar of Employee from Orvan to Local DB failed"));
}

TEST_F(OnRequest, FailsThreeTimesOverWhenTheCalendarCannotBeDeleted) {
  rig.Sql("alter table tcccp030 rename to hidden");
  rig.Sql("create view tcccp030 as select * from hidden");
  rig.Run("tcccp030=4711=E");
  EXPECT_THAT(Failure(), StartsWith("error -2147217600, Copy Calendar of Employee:"));
  EXPECT_THAT(Failure(), HasSubstr("Delete Calendar: Deleting records from Calendar failed"));
}

TEST_F(OnRequest, FailsForAnEmployeeNumberThatBreaksTheStatement) {
  rig.Run("tcccp030=47'11=E");
  EXPECT_THAT(Failure(), StartsWith("error -2147217800, Copy Calendar of Employee:"));
}

TEST_F(OnRequest, FailsForACodeThatWouldReachOtherCalendars) {
  rig.ErpHas({{"X' or 'a'<'b", {}}});
  rig.Run("tcccp030=X' or 'a'<'b=C");
  EXPECT_THAT(Failure(), StartsWith("error -2147217700, Copy Calender Of Employee:"));
  EXPECT_THAT(Failure(), HasSubstr("Delete Calendar: Deleting records from Calendar failed"));
  EXPECT_EQ(rig.LocalRecords().size(), 2u);
}

TEST_F(OnRequest, KeepsTheRecordsAddedBeforeAFailureButNotTheDeletedOnes) {
  Getters broken = Interval("DAY", "2026-11-21", 800, "2026-11-21", 1630);
  broken.insert_or_assign("getEndTime", Error(500, "Orvan", "No end time."));
  rig.ErpHas({{"DAY", {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630), broken}}});
  rig.Run("tcccp030=DAY=C");
  EXPECT_THAT(Failure(), StartsWith("error 600, Copy Calender Of Employee:"));
  EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-20, 800, 1630", "\"NIGHT\", 2026-11-01, 800, 1700"));
}

}  // namespace
}  // namespace qmx::test::calendars_on_request
