// All calendars in use, copied in full.
#include <memory>

#include "tests/copy/tables/calendar_rig.h"
#include "tests/support/faulty_driver.h"

namespace qmx::test::calendars_full {
namespace {

TEST(CalendarsInFull, CallComponentsAndDatabaseInThisOrder) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Employee("1002", "NIGHT");
  rig.ErpHas({{"DAY", {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630)}}});
  rig.Run(kCalendars);
  EXPECT_THAT(
      rig.CallsOfTheCopy(),
      ElementsAre(
          "create Calendars.CalendarManager",     //
          "manager.initialize(\"Orvan, main\")",  //
          "rs5.Open \"select DISTINCT tsmdm140.ccal  from tsmdm140 WHERE tsmdm140.ccal <>  '' \" 1 3 1",
          "rs5.MoveFirst", "rs5.MoveNext", "rs5.MoveNext", "rs5.Close",  //
          "connection.CommandTimeout 150",                               //
          "connection.Execute DELETE FROM tcccp030 WHERE 1=1",           //
          "rs1.Open \"tcccp030\" 1 3 2",                                 //
          "manager.listActualCalendar(\"DAY\", \"DAY\", \"\", \"ZZZZZZZZZ\", \"2026-9-21\", \"2038-11-20\", 0, 2400)",
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
          "manager.listActualCalendar(\"NIGHT\", \"NIGHT\", \"\", \"ZZZZZZZZZ\", \"2026-9-21\", \"2038-11-20\", 0, "
          "2400)",
          "rs1.Update",                                                              //
          "rs6.Open \"select * from tstables where tablename = 'tcccp030'\" 1 3 1",  //
          "rs6.lutm = 2026-11-20 14:05:09", "rs6.Update", "rs6.Close",               //
          "rs1.Close",                                                               //
          "log \"Date-Time :2026-11-20 : 14:05:09\"",                                //
          "log \"Table : tcccp030 - 1 records Inserted\"",                           //
          "manager.Close()"));
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tcccp030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tcccp030\", 1, 0, 0", "event done"));
}

TEST(CalendarsInFull, FillEveryColumn) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.ErpHas({{"DAY", {Interval("DAY", "2026-12-30", 1400, "2026-12-31", 2400)}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.Rows(kCalendars, {"ccal", "ract", "stdt", "sttm", "endt", "entm", "cutm", "ccap"}),
              ElementsAre("\"DAY\", \"WRK\", 2026-12-30, 1400, 2026-12-31, 2400, 8.5, 2.0"));
  EXPECT_THAT(rig.Rows(kCalendars, {"ustm", "uftm", "ahrs"}),
              ElementsAre("2026-12-30 14:00:00, 2027-01-01, \"10 Hours 0 Minutes\""));
}

TEST(CalendarsInFull, CountDurationsOnlyFromTheTimes) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.ErpHas(
      {{"DAY",
        {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630), Interval("DAY", "2026-11-21", 815, "2026-11-21", 830),
         Interval("DAY", "2026-11-22", 2200, "2026-11-23", 600), Interval("DAY", "2026-11-24", 2230, "2026-11-25", 600),
         Interval("DAY", "2026-11-26", 0, "2026-11-26", 2400)}}});
  rig.Run(kCalendars);
  EXPECT_THAT(
      rig.Rows("tcccp030", {"ahrs"}),
      testing::UnorderedElementsAre("\"8 Hours 30 Minutes\"", "\"0 Hours 15 Minutes\"", "\"-16 Hours 0 Minutes\"",
                                    "\"-16 Hours -30 Minutes\"", "\"24 Hours 0 Minutes\""));
}

TEST(CalendarsInFull, TakeTheTimeOfDayOutOfADateThatHasOne) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.ErpHas({{"DAY", {Interval("DAY", "2026-11-20 13:00:00", 800, "2026-11-20 13:00:00", 1630)}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.Rows(kCalendars, {"ustm", "uftm"}), ElementsAre("2026-11-20 08:00:00, 2026-11-20 16:30:00"));
}

TEST(CalendarsInFull, HaveNoFinishAndNoDurationWithoutAnEndDateOrWithoutAnEndTime) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  Getters noDate = Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630);
  noDate.insert_or_assign("getEndDate", Variant::Null());
  Getters noTime = Interval("DAY", "2026-11-21", 815, "2026-11-21", 1630);
  noTime.insert_or_assign("getEndTime", Variant::Null());
  rig.ErpHas({{"DAY", {noDate, noTime}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.failures.chains, IsEmpty());
  EXPECT_THAT(rig.Rows(kCalendars, {"ustm", "endt", "entm", "uftm", "ahrs"}),
              testing::UnorderedElementsAre("2026-11-20 08:00:00, null, 1630, null, null",
                                            "2026-11-21 08:15:00, 2026-11-21, null, null, null"));
}

TEST(CalendarsInFull, LeaveEverythingAloneWhenNoEmployeeHasACalendar) {
  CalendarRig rig;
  rig.ControlRecord(kCalendars, kFullCopy, "2026-01-01");
  rig.Employee("1001", "");
  rig.LocalRecord("DAY", "2026-11-01", 800);
  rig.ErpHas({{"DAY", {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630)}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-01, 800, 1700"));
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-01-01");
  EXPECT_EQ(rig.CopyLog(kCalendars), "");
  EXPECT_THAT(ManagerCalls(rig.calls), ElementsAre("manager.initialize(\"Orvan, main\")"));
  EXPECT_THAT(rig.Events(), ElementsAre("event Started 2026-11-20 14:05:09, \"tcccp030\"",
                                        "event Complete 2026-11-20 14:05:09, \"tcccp030\", 0, 0, 0", "event done"));
}

TEST(CalendarsInFull, CopyOnlyCalendarsInUseEachOnce) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Employee("1002", "DAY");
  rig.LocalRecord("OLD", "2020-01-01", 800);
  rig.ErpHas({{"DAY",
               {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1200),
                Interval("DAY", "2026-11-20", 1300, "2026-11-20", 1700)}},
              {"UNUSED", {Interval("UNUSED", "2026-11-20", 800, "2026-11-20", 1630)}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.LocalRecords(),
              testing::UnorderedElementsAre("\"DAY\", 2026-11-20, 800, 1200", "\"DAY\", 2026-11-20, 1300, 1700"));
}

TEST(CalendarsInFull, EmptyTheTableEvenIfTheErpListsNothing) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Employee("1002", "EMPTY");
  rig.LocalRecord("DAY", "2026-11-01", 800);
  rig.ErpHas({{"EMPTY", {}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.LocalRecords(), IsEmpty());
  EXPECT_EQ(rig.calls.Count("rs1.Update"), 0u);
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 14:05:09");
  EXPECT_EQ(rig.CopyLog(kCalendars),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Table : tcccp030 - 0 records Inserted\"\r\n");
}

TEST(CalendarsInFull, NeverTouchTheExpandedIntervals) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Sql("insert into tscalender (ccal, sttm, entm) values ('DAY', '2026-11-20 08:00:00', '2026-11-20 09:00:00')");
  rig.ErpHas({{"DAY", {}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.Rows("tscalender", {"ccal", "sttm"}), ElementsAre("\"DAY\", 2026-11-20 08:00:00"));
}

TEST(CalendarsInFull, KeepWhatWasAddedWhenARecordFails) {
  CalendarRig rig;
  rig.ControlRecord(kCalendars, kFullCopy, "2026-01-01");
  rig.Employee("1001", "DAY");
  rig.LocalRecord("OLD", "2020-01-01", 800);
  Getters broken = Interval("DAY", "2026-11-21", 800, "2026-11-21", 1630);
  broken.insert_or_assign("getEndTime", Error(500, "Orvan", "No end time."));
  rig.ErpHas({{"DAY", {Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630), broken}}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"DAY\", 2026-11-20, 800, 1630"));
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-01-01");
  EXPECT_THAT(rig.calls.StartingWith({"rs1.C", "manager.C"}),
              ElementsAre("rs1.CancelUpdate", "rs1.Close", "manager.Close()"));
  ASSERT_EQ(rig.failures.chains.size(), 1u);
  EXPECT_THAT(rig.failures.chains[0],
              testing::StartsWith("error 600, Copy Calenders:  Copy of Calenders from Orvan to Local DB failed"));
  EXPECT_THAT(rig.failures.chains[0], testing::HasSubstr("key: ccal='DAY', ract='WRK', stdt=2026-11-21, sttm=800"));
  EXPECT_EQ(rig.CopyLog(kCalendars),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n"
            "\"Copy Calenders\",\" Copy of Calenders from Orvan to Local DB failed\"\r\n");
}

TEST(CalendarsInFull, TakeTheMomentBeforeTheFirstListingAsTheNewLastUpdateTime) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Employee("1002", "NIGHT");
  rig.clock.step = 1;
  rig.erp.ListsBy(
      kCalendarManager,
      [&](ScriptedObject::Arguments bounds) {
        rig.clock.now = rig.clock.now.PlusTime(1, 0, 0);
        return std::vector<Getters>{Interval(bounds[0].Value().ToText(), "2026-11-20", 800, "2026-11-20", 1630)};
      },
      "listActualCalendar");
  rig.Run(kCalendars);
  // Readings: 09 the start event, 10 the dates to list, 11 the stamp.
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 14:05:11");
  EXPECT_EQ(rig.LocalRecords().size(), 2u);
}

TEST(CalendarsInFull, HaveTheirStampTakenAfterTheTableIsOpen) {
  std::unique_ptr<FaultyDriver> driver;
  CalendarRig rig([&](Driver& inner) -> Driver& {
    driver = std::make_unique<FaultyDriver>(inner);
    return *driver;
  });
  rig.Employee("1001", "DAY");
  rig.ErpHas({{"DAY", {}}});
  driver->before = [&](const std::string& operation) {
    if (operation == "Describe tcccp030") rig.clock.now = rig.clock.now.PlusTime(1, 0, 0);
  };
  rig.Run(kCalendars);
  EXPECT_EQ(driver->CountOf("Describe tcccp030"), 1);
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 15:05:09");
}

TEST(CalendarsInFull, FailTwiceOverWhenTheTableCannotBeEmptied) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Sql("drop table tcccp030");
  rig.ErpHas({{"DAY", {}}});
  rig.Run(kCalendars);
  ASSERT_EQ(rig.failures.chains.size(), 1u);
  EXPECT_THAT(rig.failures.chains[0],
              testing::AllOf(testing::HasSubstr("Copy Calenders:"),
                             testing::HasSubstr("Delete All Records: Deleting records from tcccp030 failed")));
}

TEST(CalendarsInFull, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfFullCopy(kCalendars, kCalendarManager),
            "error 600, Copy Calenders:  Copy of Calenders from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::calendars_full
