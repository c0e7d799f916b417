// Calendars in use, copied by change: the audit reader once per local calendar, whole calendars where none is local.
#include "tests/copy/tables/calendar_rig.h"

namespace qmx::test::calendars_changed {
namespace {

const char* const kKey = " where ccal='DAY' and   ract='WRK' and   stdt='2026-11-20' and   sttm= 800";

TEST(CalendarsByChange, CallComponentsAndDatabaseInThisOrder) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Employee("1002", "NEW");
  rig.LocalRecord("DAY", "2026-11-19", 800);
  rig.ErpHas({{"NEW", {Interval("NEW", "2026-11-20", 2200, "2026-11-20", 2400)}}});
  rig.AuditsByCalendar({{Deleted(Interval("DAY", "2026-11-20", 800, "2026-11-20", 1630))}});
  rig.Run(kCalendars);
  EXPECT_THAT(
      rig.CallsOfTheCopy(),
      ElementsAre(
          "create Calendars.CalendarManager", "create Calendars.ActualCalendar", "create audit.auditCriteria",
          "create audit.period", "create audit.Parameter", "create audit.Parameter", "create audit.Parameter",
          "create audit.Parameter", "create audit.AuditReader", "create audit.RecordStatus",      //
          "manager.initialize(\"Orvan, main\")", "recordClass.getClass()",                        //
          "create java:java.util.Date",                                                           //
          "rs5.Open \"select * from tstables where tablename = 'tcccp030'\" 1 3 1", "rs5.Close",  //
          "date1.setDate(19)", "date1.setmonth(10)", "date1.setYear(126)", "date1.setHours(0)", "date1.setMinutes(0)",
          "date1.setSeconds(0)",  //
          "create java:java.util.Date", "date2.setDate(20)", "date2.setmonth(10)", "date2.setYear(126)",
          "date2.setHours(14)", "date2.setMinutes(5)", "date2.setSeconds(9)",            //
          "period.setFrom(date1)", "period.setTo(date2)", "criteria.setPeriod(period)",  //
          "parameter1.setFieldName(\"ract\")", "parameter1.setFrom(\"\")", "parameter1.setTo(\"ZZZZZZZZZ\")",
          "parameter2.setFieldName(\"stdt\")", "parameter2.setFrom(\"2026-09-21\")", "parameter2.setTo(\"2038-11-20\")",
          "parameter3.setFieldName(\"sttm\")", "parameter3.setFrom(\"0000\")", "parameter3.setTo(\"2400\")",
          "criteria.addOutputField(\"ccal\")", "criteria.addOutputField(\"ract\")", "criteria.addOutputField(\"stdt\")",
          "criteria.addOutputField(\"sttm\")", "criteria.addOutputField(\"endt\")", "criteria.addOutputField(\"entm\")",
          "criteria.addOutputField(\"cutm\")", "criteria.addOutputField(\"ccap\")",  //
          "rs6.Open \"select DISTINCT tsmdm140.ccal  from tsmdm140 WHERE tsmdm140.ccal <>  '' \" 1 3 1",
          "rs6.MoveFirst", "rs6.MoveNext", "rs6.MoveNext", "rs6.Close",                                     //
          "rs7.Open \"select * from tcccp030 where ccal = 'DAY'\" 1 3 1", "rs7.Close",                      //
          "parameter4.setFieldName(\"ccal\")", "parameter4.setFrom(\"DAY\")", "parameter4.setTo(\"DAY\")",  //
          "criteria.addParameter(parameter4)", "criteria.addParameter(parameter1)", "criteria.addParameter(parameter2)",
          "criteria.addParameter(parameter3)",                                                       //
          "reader.initialize(manager, recordClass, criteria)",                                       //
          "reader.hasMoreElements()", "reader.nextElement()", "entry1.getTuple()",                   //
          "reader.getCurrentObject(tuple1)", "status.isDeleted(entry1)",                             //
          "current1.getCalendar()", "current1.getavailabilityType()", "current1.getStartDate()",     //
          "current1.getStartTime()", std::string("connection.Execute DELETE FROM tcccp030") + kKey,  //
          "reader.hasMoreElements()",                                                                //
          "rs8.Open \"select * from tcccp030 where ccal = 'NEW'\" 1 3 1", "rs8.Close",               //
          "manager.listActualCalendar(\"NEW\", \"NEW\", \"\", \"ZZZZZZZZZ\", \"2026-09-21\", \"2038-11-20\", 0, 2400)",
          "rs1.Open \"select * from tcccp030 where ccal = 'NEW'\" 1 3 1",  //
          "listing.hasMoreElements()", "listing.nextElement()",            //
          "rs1.AddNew",                                                    //
          "listed1.getCalendar()", "rs1.ccal = \"NEW\"",                   //
          "listed1.getavailabilityType()", "rs1.ract = \"WRK\"",           //
          "listed1.getStartDate()", "rs1.stdt = 2026-11-20",               //
          "listed1.getStartTime()", "rs1.sttm = 2200",                     //
          "listed1.getEndDate()", "rs1.endt = 2026-11-20",                 //
          "listed1.getEndTime()", "rs1.entm = 2400",                       //
          "listed1.getCumulativeTime()", "rs1.cutm = 8.5",                 //
          "listed1.getCumulativeCapacity()", "rs1.ccap = 2.0",             //
          "rs1.ustm = 2026-11-20 22:00:00", "rs1.uftm = 2026-11-21",       //
          "rs1.ahrs = \"2 Hours 0 Minutes\"",                              //
          "listing.hasMoreElements()",                                     //
          "rs1.Close",                                                     //
          "date2.getyear()", "date2.getMonth()", "date2.getyear()", "date2.getMonth()", "date2.getDate()",
          "date2.getHours()", "date2.getMinutes()", "date2.getSeconds()",            //
          "rs9.Open \"select * from tstables where tablename = 'tcccp030'\" 1 3 1",  //
          "rs9.lutm = 2026-11-20 14:05:09", "rs9.Update", "rs9.Close",               //
          "log \"Date-Time :2026-11-20 : 14:05:09\"",                                //
          "log \"Table : tcccp030 - 1 records Inserted\"",                           //
          "log \"Table : tcccp030 - 1 records Deleted\""));
}

TEST(CalendarsByChange, GiveTheSecondLocalCalendarTheParametersOfTheFirstToo) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Employee("1002", "NIGHT");
  rig.LocalRecord("DAY", "2026-11-19", 800);
  rig.LocalRecord("NIGHT", "2026-11-19", 800);
  rig.ErpHas({});
  rig.AuditsByCalendar({{}, {}});
  rig.Run(kCalendars);
  EXPECT_THAT(
      rig.calls.StartingWith({"criteria.addParameter", "parameter4.set", "reader.initialize"}),
      ElementsAre("parameter4.setFieldName(\"ccal\")", "parameter4.setFrom(\"DAY\")", "parameter4.setTo(\"DAY\")",
                  "criteria.addParameter(parameter4)", "criteria.addParameter(parameter1)",
                  "criteria.addParameter(parameter2)", "criteria.addParameter(parameter3)",
                  "reader.initialize(manager, recordClass, criteria)",  //
                  "parameter4.setFieldName(\"ccal\")", "parameter4.setFrom(\"NIGHT\")", "parameter4.setTo(\"NIGHT\")",
                  "criteria.addParameter(parameter4)", "criteria.addParameter(parameter1)",
                  "criteria.addParameter(parameter2)", "criteria.addParameter(parameter3)",
                  "reader.initialize(manager, recordClass, criteria)"));
  EXPECT_EQ(rig.calls.Count("create audit.auditCriteria"), 1u);
}

TEST(CalendarsByChange, ApplyTheAuditEntriesOfEachLocalCalendar) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.Employee("1002", "NIGHT");
  rig.LocalRecord("DAY", "2026-11-18", 800);
  rig.LocalRecord("DAY", "2026-11-19", 800);
  rig.LocalRecord("NIGHT", "2026-11-19", 800);
  rig.ErpHas({});
  AuditEntry neither = Inserted(Interval("DAY", "2026-11-30", 800, "2026-11-30", 900));
  neither.inserted = false;
  rig.AuditsByCalendar({{Updated(Interval("DAY", "2026-11-18", 800, "2026-11-18", 1200)),
                         Inserted(Interval("DAY", "2026-11-20", 900, "2026-11-20", 1300)),
                         Updated(Interval("DAY", "2026-11-21", 900, "2026-11-21", 1300)), neither,
                         Deleted(Interval("DAY", "2026-11-19", 800, "2026-11-19", 1700)),
                         Deleted(Interval("DAY", "2026-11-01", 800, "2026-11-01", 1700))},
                        {Inserted(Interval("NIGHT", "2026-11-19", 800, "2026-11-19", 1000))}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.LocalRecords(),
              testing::UnorderedElementsAre("\"DAY\", 2026-11-18, 800, 1200", "\"DAY\", 2026-11-20, 900, 1300",
                                            "\"DAY\", 2026-11-21, 900, 1300", "\"NIGHT\", 2026-11-19, 800, 1000"));
  EXPECT_THAT(
      SqlTexts(rig.calls),
      ElementsAre(
          "select * from tcccp030 where ccal='DAY' and   ract='WRK' and   stdt='2026-11-18' and   sttm= 800",
          "select * from tcccp030 where ccal='DAY' and   ract='WRK' and   stdt='2026-11-20' and   sttm= 900",
          "select * from tcccp030 where ccal='DAY' and   ract='WRK' and   stdt='2026-11-21' and   sttm= 900",
          "DELETE FROM tcccp030 where ccal='DAY' and   ract='WRK' and   stdt='2026-11-19' and   sttm= 800",
          "DELETE FROM tcccp030 where ccal='DAY' and   ract='WRK' and   stdt='2026-11-01' and   sttm= 800",
          "select * from tcccp030 where ccal='NIGHT' and   ract='WRK' and   stdt='2026-11-19' and   sttm= 800"));
  EXPECT_EQ(rig.CopyLog(kCalendars),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Table : tcccp030 - 2 records Inserted\"\r\n"
            "\"Table : tcccp030 - 2 records Updated\"\r\n\"Table : tcccp030 - 2 records Deleted\"\r\n");
}

TEST(CalendarsByChange, CopyACalendarThatIsNotLocalWholeWithItsLastRecord) {
  CalendarRig rig;
  rig.Employee("1001", "NEW");
  rig.ErpHas({{"NEW",
               {Interval("NEW", "2026-11-20", 800, "2026-11-20", 1200),
                Interval("NEW", "2026-11-20", 1300, "2026-11-20", 1700),
                Interval("NEW", "2026-11-21", 800, "2026-11-21", 1200)}}});
  rig.AuditsByCalendar({});
  rig.Run(kCalendars);
  EXPECT_EQ(rig.LocalRecords().size(), 3u);
  EXPECT_EQ(rig.calls.Count("rs1.Update"), 0u);
  EXPECT_EQ(rig.Events().at(1), "event Complete 2026-11-20 14:05:09, \"tcccp030\", 3, 0, 0");
}

TEST(CalendarsByChange, SkipACalendarThatNeitherSideHas) {
  CalendarRig rig;
  rig.Employee("1001", "NEW");
  rig.ErpHas({});
  rig.AuditsByCalendar({});
  rig.Run(kCalendars);
  EXPECT_THAT(SqlTexts(rig.calls), IsEmpty());
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 14:05:09");
}

TEST(CalendarsByChange, MoveTheLastUpdateTimeAlsoWhenNoEmployeeHasACalendar) {
  CalendarRig rig;
  rig.LocalRecord("DAY", "2026-11-19", 800);
  rig.ErpHas({});
  rig.AuditsByCalendar({});
  rig.Run(kCalendars);
  EXPECT_EQ(rig.LocalRecords().size(), 1u);
  EXPECT_THAT(rig.calls.StartingWith({"reader.", "manager."}), ElementsAre("manager.initialize(\"Orvan, main\")"));
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 14:05:09");
  EXPECT_EQ(rig.CopyLog(kCalendars),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Table : tcccp030 - 0 records Inserted\"\r\n");
}

TEST(CalendarsByChange, MissTheChangesAndMoveTheLastUpdateTimeIfTheCalendarsInUseCannotBeListed) {
  CalendarRig rig;
  rig.LocalRecord("DAY", "2026-11-19", 800);
  rig.ErpHas({});
  rig.AuditsByCalendar({{Inserted(Interval("DAY", "2026-11-20", 900, "2026-11-20", 1300))}});
  rig.Sql("drop table tsmdm140");
  rig.Run(kCalendars);
  EXPECT_EQ(rig.LocalRecords().size(), 1u);
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 14:05:09");
  EXPECT_THAT(rig.failures.chains, IsEmpty());
}

TEST(CalendarsByChange, KeepTheLastUpdateTimeAndTheAppliedChangesWhenTheAuditFails) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.LocalRecord("DAY", "2026-11-19", 800);
  rig.ErpHas({});
  rig.AuditsByCalendar({{Inserted(Interval("DAY", "2026-11-20", 900, "2026-11-20", 1300))}});
  rig.erp.auditFailure = Error(500, "Orvan", "The audit broke.");
  rig.Run(kCalendars);
  EXPECT_EQ(rig.LocalRecords().size(), 2u);
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-19");
  EXPECT_EQ(rig.CopyLog(kCalendars),
            "\"Date-Time :2026-11-20 : 14:05:09\"\r\n\"Orvan\",\"The audit broke.\"\r\n"
            "\"Copy Calenders - Only Changed\",\" Copy of Calenders from Orvan to Local DB failed\"\r\n");
}

TEST(CalendarsByChange, DropAHalfFilledRecordOfACalendarThatIsNotLocal) {
  CalendarRig rig;
  rig.Employee("1001", "NEW");
  Getters broken = Interval("NEW", "2026-11-21", 800, "2026-11-21", 1630);
  broken.insert_or_assign("getEndTime", Error(500, "Orvan", "No end time."));
  rig.ErpHas({{"NEW", {Interval("NEW", "2026-11-20", 800, "2026-11-20", 1200), broken}}});
  rig.AuditsByCalendar({});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.LocalRecords(), ElementsAre("\"NEW\", 2026-11-20, 800, 1200"));
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-19");
}

// The audit reader has but the key of a record that was deleted after its change.
TEST(CalendarsByChange, PassARecordOfWhichOnlyTheKeyIsLeft) {
  CalendarRig rig;
  rig.Employee("1001", "DAY");
  rig.LocalRecord("DAY", "2026-11-19", 800);
  rig.ErpHas({});
  Getters keyOnly = Interval("DAY", "2026-11-20", 900, "2026-11-20", 1300);
  for (const char* getter : {"getEndDate", "getEndTime", "getCumulativeTime", "getCumulativeCapacity"}) {
    keyOnly.insert_or_assign(getter, Variant::Null());
  }
  rig.AuditsByCalendar({{Inserted(keyOnly)}});
  rig.Run(kCalendars);
  EXPECT_THAT(rig.Rows("tcccp030 where sttm = 900", {"ustm", "uftm", "ahrs"}),
              ElementsAre("2026-11-20 09:00:00, null, null"));
  EXPECT_EQ(rig.Lutm(kCalendars), "2026-11-20 14:05:09");
}

TEST(CalendarsByChange, FailForACodeThatBreaksTheStatement) {
  CalendarRig rig;
  rig.Employee("1001", "A''B");
  rig.ErpHas({});
  rig.AuditsByCalendar({});
  rig.Run(kCalendars);
  ASSERT_EQ(rig.failures.chains.size(), 1u);
  EXPECT_THAT(rig.failures.chains[0], testing::StartsWith("error -2147217800, Copy Calenders - Only Changed:"));
}

TEST(CalendarsByChange, FailWithTheirTexts) {
  EXPECT_EQ(FailureOfChangedCopy(kCalendars, kCalendarManager),
            "error 600, Copy Calenders - Only Changed:  Copy of Calenders from Orvan to Local DB failed");
}

}  // namespace
}  // namespace qmx::test::calendars_changed
