// The audit classes: which changes a reader shows, in which order, and what it gives of each record.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

#include "tests/sandbox/sandbox_erp.h"
#include "tests/support/environment.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

DateTime At(int hour, int minute = 0, int second = 0) {
  return DateTime::FromDate(2026, 11, 20).PlusTime(hour, minute, second);
}

class Audit : public testing::Test {
 protected:
  struct Bounds {
    const char* column;
    Variant from, to;
  };

  // A reader as a changed copy sets it up.
  Object Reader(const std::string& managerProgId, const std::string& recordProgId, const std::vector<Bounds>& bounds,
                const std::vector<std::string>& fields, DateTime from = At(0), DateTime to = At(24)) {
    const Object period = erp_.Create("audit.period");
    period.Call("setFrom", erp_.Date(from));
    period.Call("setTo", erp_.Date(to));
    const Object criteria = erp_.Create("audit.auditCriteria");
    criteria.Call("setPeriod", period);
    for (const Bounds& bound : bounds) criteria.Call("addParameter", Parameter(bound));
    for (const std::string& field : fields) criteria.Call("addOutputField", field);
    const Object reader = erp_.Create("audit.AuditReader");
    reader.Call("initialize", erp_.Manager(managerProgId), erp_.Create(recordProgId), criteria);
    return reader;
  }

  Object Parameter(const Bounds& bound) {
    const Object parameter = erp_.Create("audit.Parameter");
    parameter.Call("setFieldName", bound.column);
    parameter.Call("setFrom", bound.from);
    parameter.Call("setTo", bound.to);
    return parameter;
  }

  Object ServiceTypes(DateTime from = At(0), DateTime to = At(24)) {
    return Reader("ServiceTypes.ServiceTypesManager", "ServiceTypes.ServiceTypes", {{"cstp", "", "ZZZ"}},
                  {"desc", "proc", "ract"}, from, to);
  }

  // Each entry as "I KEY…": how, and what the getters give of the current object.
  std::vector<std::string> Entries(const Object& reader, const std::vector<std::string>& getters) {
    const Object status = erp_.Create("audit.RecordStatus");
    std::vector<std::string> entries;
    while (reader.Call("hasMoreElements").ToBoolean()) {
      const Object entry = reader.Call("nextElement").ToObject();
      const Object current = reader.Call("getCurrentObject", entry.Call("getTuple")).ToObject();
      std::string text;
      if (status.Call("isDeleted", entry).ToBoolean()) text += 'D';
      if (status.Call("isUpdated", entry).ToBoolean()) text += 'U';
      if (status.Call("isInserted", entry).ToBoolean()) text += 'I';
      for (const std::string& getter : getters) {
        const Variant value = current.Call(std::string_view(getter));
        text += ' ' + (value == Variant("") ? "-" : value.ToText());
      }
      entries.push_back(std::move(text));
    }
    return entries;
  }

  SandboxErp erp_;
};

TEST_F(Audit, ShowsChangesOfAnySqlTool) {
  erp_.RunAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'one'), ('B', 'two')");
  erp_.RunAt("2026-11-20 10:00:00", "UPDATE tsmdm030 SET \"desc\" = 'changed' WHERE cstp = 'B'");
  erp_.RunAt("2026-11-20 11:00:00", "DELETE FROM tsmdm030 WHERE cstp = 'A'");
  EXPECT_THAT(Entries(ServiceTypes(), {"getServiceType", "getServiceTypeDescription"}),
              ElementsAre("I A -", "I B changed", "U B changed", "D A -"));
}

TEST_F(Audit, StampsWithTheLocalTimeOfTheMachineWhenNobodyPretendsAnother) {
  const EnvironmentVariable zone("TZ", "Asia/Kolkata");
  tzset();
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES ('A')");
  erp_.Run(
      "CREATE TABLE close AS SELECT abs(julianday(at) - julianday('now', '+5 hours', '+30 minutes')) * 86400 < 600 AS "
      "yes FROM audit_tsmdm030");
  EXPECT_THAT(Entries(ServiceTypes(DateTime::FromDate(2000, 1, 1), DateTime::FromDate(2100, 1, 1)), {"getServiceType"}),
              ElementsAre("I A"));
  auto file = orvan::Database::OpenToRead(erp_.Path());
  orvan::Statement close(file, "SELECT yes FROM close");
  ASSERT_TRUE(close.Step());
  EXPECT_EQ(1, close.Whole(0));
}

TEST_F(Audit, ClosesThePeriodAtBothEnds) {
  erp_.RunAt("2026-11-20 08:59:59", "INSERT INTO tsmdm030 (cstp) VALUES ('A')");
  erp_.RunAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp) VALUES ('B')");
  erp_.RunAt("2026-11-20 10:00:00", "INSERT INTO tsmdm030 (cstp) VALUES ('C')");
  erp_.RunAt("2026-11-20 10:00:01", "INSERT INTO tsmdm030 (cstp) VALUES ('D')");
  EXPECT_THAT(Entries(ServiceTypes(At(9), At(10)), {"getServiceType"}), ElementsAre("I B", "I C"));
}

TEST_F(Audit, KeepsTheOrderInWhichThingsHappenedWhateverTheClockSaid) {
  erp_.RunAt("2026-10-25 02:59:00", "INSERT INTO tsmdm030 (cstp) VALUES ('A')");
  erp_.RunAt("2026-10-25 02:01:00", "DELETE FROM tsmdm030");  // clocks were put back meanwhile
  erp_.RunAt("2026-10-25 02:02:00", "INSERT INTO tsmdm030 (cstp) VALUES ('A')");
  EXPECT_THAT(Entries(ServiceTypes(DateTime::FromDate(2026, 10, 25), At(0)), {"getServiceType"}),
              ElementsAre("I A", "D A", "I A"));
}

TEST_F(Audit, GivesADeletedRecordThatCameBackAsItIsNow) {
  erp_.RunAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'old')");
  erp_.RunAt("2026-11-20 10:00:00", "DELETE FROM tsmdm030");
  erp_.RunAt("2026-11-20 11:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'new')");
  EXPECT_THAT(Entries(ServiceTypes(), {"getServiceType", "getServiceTypeDescription"}),
              ElementsAre("I A new", "D A new", "I A new"));
}

TEST_F(Audit, TakesAChangedKeyAsADeletionAndAnInsertion) {
  erp_.RunAt("2026-11-19 09:00:00", "INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'one')");
  erp_.RunAt("2026-11-20 09:00:00", "UPDATE tsmdm030 SET cstp = 'B'");
  EXPECT_THAT(Entries(ServiceTypes(), {"getServiceType", "getServiceTypeDescription"}),
              ElementsAre("D A -", "I B one"));
}

TEST_F(Audit, FillsTheKeyAndTheOutputFieldsOnly) {
  erp_.RunAt("2026-11-20 09:00:00",
             "INSERT INTO tscfg220 (ccfg, \"desc\", ofbp, tecr, dist) VALUES ('C1', 'Pump', 'BP1', 'E1', 12.5)");
  const Object reader = Reader("Configurations.ConfigurationsManager", "Configurations.Configurations",
                               {{"ccfg", "", "ZZZZZZZZ"}}, {"desc", "dist"});
  EXPECT_THAT(Entries(reader, {"getConfiguration", "getdescription", "getSoldToBusinessPartner",
                               "getResponsibleEngineer", "getTravelDistance"}),
              ElementsAre("I C1 Pump - - 12.5"));
}

TEST_F(Audit, GivesDateObjectsOfNoDateForPointsInTimeThatWereNotAskedFor) {
  erp_.RunAt("2026-11-20 09:00:00",
             "INSERT INTO tssoc200 (orno, ordt, pstm) VALUES ('SO1', '2026-11-20 08:00:00', '2026-11-21 08:00:00')");
  const Object reader = Reader("ServiceOrders.ServiceOrdersManager", "ServiceOrders.ServiceOrders",
                               {{"orno", "", "ZZZZZZZZZ"}}, {"ordt"});
  const Object order =
      reader.Call("getCurrentObject", reader.Call("nextElement").ToObject().Call("getTuple")).ToObject();
  EXPECT_EQ("126-10-20 8:0:0", Parts(order.Call("getOrderDate").ToObject()));
  EXPECT_EQ("0-0-1 0:0:0", Parts(order.Call("getPlannedStartTime").ToObject()));
}

TEST_F(Audit, FiltersByEveryParameter) {
  erp_.RunAt("2026-11-20 09:00:00",
             "INSERT INTO tsmdm135 VALUES ('E1', 'S1', 'G1', 1), ('E1', 'S2', 'G1', 1), ('E2', 'S1', 'G1', 1), "
             "('E1', 'S1', 'G2', 1)");
  const Object reader =
      Reader("SkillsByEmployee.SkillsByEmployeeManager", "SkillsByEmployee.SkillsByEmployee",
             {{"emno", "E1", "E1"}, {"skll", "S1", "S1"}, {"cogr", "", "ZZZZZZ"}}, {"emno", "skll", "cogr", "afct"});
  EXPECT_THAT(Entries(reader, {"getserviceemployee", "getSkill", "getObjectGroup"}),
              ElementsAre("I E1 S1 G1", "I E1 S1 G2"));
}

TEST_F(Audit, ReadsTextBoundsOfNumbersAsNumbers) {
  erp_.RunAt("2026-11-20 09:00:00", "INSERT INTO tsclm024 VALUES (9, ''), (90.5, ''), (999.99, ''), (1000, '')");
  EXPECT_THAT(Entries(Reader("PriorityTimeScale.PriorityTimeScaleManager", "PriorityTimeScale.PriorityTimeScale",
                             {{"sltt", "000.00", "999.99"}}, {"sltt", "desc"}),
                      {"getSolutionTimeInMinutes"}),
              ElementsAre("I 9", "I 90.5", "I 999.99"));

  erp_.RunAt("2026-11-20 09:00:00",
             "INSERT INTO tssoc205 VALUES ('S', 1, '', 0), ('S', 9999, '', 0), ('S', 10000, '', 0)");
  EXPECT_THAT(Entries(Reader("ServiceOrderEngineers.ServiceOrderEngineersManager",
                             "ServiceOrderEngineers.ServiceOrderEngineers",
                             {{"orno", "", "ZZZZZZZZZ"}, {"line", "0000", "9999"}}, {"emno", "acln"}),
                      {"getLineNumber"}),
              ElementsAre("I 1", "I 9999"));
}

class CalendarAudit : public Audit {
 protected:
  CalendarAudit() {
    erp_.RunAt("2026-11-20 09:00:00",
               "INSERT INTO tcccp030 VALUES ('C1', 'WRK', '2026-09-30', 800, '2026-09-30', 1700, 9, 8), "
               "('C1', 'WRK', '2038-03-01', 2400, '2038-03-01', 2400, 9, 8), "
               "('C2', 'WRK', '2026-10-01', 800, '2026-10-01', 1700, 9, 8), "
               "('C2', 'WRK', '2038-03-02', 800, '2038-03-02', 1700, 9, 8)");
  }
};

TEST_F(CalendarAudit, GivesADeletedRecordsKeyAndBlanks) {
  erp_.RunAt("2026-11-20 10:00:00", "DELETE FROM tcccp030 WHERE ccal = 'C2' OR stdt > '2038'");
  const Object reader = Reader("Calendars.CalendarManager", "Calendars.ActualCalendar", {{"ccal", "C1", "C1"}},
                               {"ccal", "ract", "stdt", "sttm", "endt", "entm", "cutm", "ccap"});
  EXPECT_THAT(Entries(reader, {"getCalendar", "getavailabilityType", "getStartDate", "getStartTime", "getEndDate",
                               "getEndTime", "getCumulativeTime"}),
              ElementsAre("I C1 WRK 2026-09-30 800 2026-09-30 1700 9", "I C1 WRK 2038-03-01 2400 1899-12-30 0 0",
                          "D C1 WRK 2038-03-01 2400 1899-12-30 0 0"));
}

TEST_F(CalendarAudit, ReadsDatesAndTimesOfDayAsTheyAre) {
  const Object reader = Reader(
      "Calendars.CalendarManager", "Calendars.ActualCalendar",
      {{"ccal", "", "ZZZ"}, {"ract", "", "ZZZZZZZZZ"}, {"stdt", "2026-09-30", "2038-02-29"}, {"sttm", "0000", "2400"}},
      {"ccal", "ract", "stdt", "sttm", "endt", "entm", "cutm", "ccap"});
  EXPECT_THAT(Entries(reader, {"getCalendar", "getStartDate", "getStartTime", "getEndTime"}),
              ElementsAre("I C1 2026-09-30 800 1700", "I C1 2038-03-01 2400 2400", "I C2 2026-10-01 800 1700"));
  const Object unpadded =
      Reader("Calendars.CalendarManager", "Calendars.ActualCalendar", {{"stdt", "2026-9-30", "2026-10-1"}}, {"ccal"});
  EXPECT_THAT(Entries(unpadded, {"getCalendar", "getStartDate"}), ElementsAre("I C1 2026-09-30", "I C2 2026-10-01"));
}

// One criteria object serves many calendars: the same four parameters are added again for each of them, and the one
// for the calendar's code is changed in between.
TEST_F(CalendarAudit, SeesAParameterChangedAfterItWasAddedAndAddedAgain) {
  const Object period = erp_.Create("audit.period");
  period.Call("setFrom", erp_.Date(At(0)));
  period.Call("setTo", erp_.Date(At(24)));
  const Object criteria = erp_.Create("audit.auditCriteria");
  criteria.Call("setPeriod", period);
  criteria.Call("addOutputField", "ccal");
  const Object manager = erp_.Manager("Calendars.CalendarManager");
  const Object record = erp_.Create("Calendars.ActualCalendar");
  const Object reader = erp_.Create("audit.AuditReader");
  const Object code = Parameter({"ccal", "", ""});
  const Object type = Parameter({"ract", "", "ZZZZZZZZZ"});
  const auto read = [&](const char* calendar) {
    code.Call("setFrom", calendar);
    code.Call("setTo", calendar);
    criteria.Call("addParameter", code);
    criteria.Call("addParameter", type);
    reader.Call("initialize", manager, record, criteria);
    return Entries(reader, {"getCalendar", "getStartDate"});
  };
  for (int i = 0; i < 600; ++i) {  // far more parameters than a statement could hold conditions
    EXPECT_THAT(read("C1"), ElementsAre("I C1 2026-09-30", "I C1 2038-03-01"));
    if (HasFailure()) break;
  }
  EXPECT_THAT(read("C2"), ElementsAre("I C2 2026-10-01", "I C2 2038-03-02"));
  EXPECT_THAT(read("C3"), IsEmpty());
}

TEST_F(Audit, ReadsThePeriodWhenAReaderStartsAndNotBefore) {
  erp_.RunAt("2026-11-20 09:00:00", "INSERT INTO tsmdm030 (cstp) VALUES ('A')");
  const Object from = erp_.Date(At(10));
  const Object period = erp_.Create("audit.period");
  period.Call("setFrom", from);
  period.Call("setTo", erp_.Date(At(24)));
  const Object criteria = erp_.Create("audit.auditCriteria");
  criteria.Call("setPeriod", period);
  from.Call("setHours", 9);
  const Object reader = erp_.Create("audit.AuditReader");
  reader.Call("initialize", erp_.Manager("ServiceTypes.ServiceTypesManager"), erp_.Create("ServiceTypes.ServiceTypes"),
              criteria);
  EXPECT_TRUE(reader.Call("hasMoreElements").ToBoolean());
}

TEST_F(Audit, TakesTheSandboxsOwnDateObjectsToo) {
  erp_.RunAt("2026-11-20 09:00:00", "INSERT INTO tssoc200 (orno, ordt) VALUES ('SO1', '2026-11-20 09:00:00')");
  const Object own = erp_.Manager("ServiceOrders.ServiceOrdersManager")
                         .Call("listServiceOrders", "", "Z")
                         .ToObject()
                         .Call("nextElement")
                         .ToObject()
                         .Call("getOrderDate")
                         .ToObject();
  const Object period = erp_.Create("audit.period");
  period.Call("setFrom", own);
  period.Call("setTo", own);
  const Object criteria = erp_.Create("audit.auditCriteria");
  criteria.Call("setPeriod", period);
  const Object reader = erp_.Create("audit.AuditReader");
  reader.Call("initialize", erp_.Manager("ServiceOrders.ServiceOrdersManager"),
              erp_.Create("ServiceOrders.ServiceOrders"), criteria);
  EXPECT_THAT(Entries(reader, {"getServiceOrder"}), ElementsAre("I SO1"));
}

TEST_F(Audit, IsKeptForEveryTable) {
  for (const orvan::Table& table : orvan::AllTables()) {
    SCOPED_TRACE(table.code);
    erp_.RunAt("2026-11-20 09:00:00", "INSERT INTO " + std::string(table.code) + " DEFAULT VALUES");
    const auto& column = table.columns.back();
    erp_.RunAt("2026-11-20 09:00:00",
               "UPDATE " + std::string(table.code) + " SET \"" + std::string(column.name) + "\" = 7 WHERE 1");
    erp_.RunAt("2026-11-20 09:00:00", "DELETE FROM " + std::string(table.code));
    EXPECT_THAT(Entries(Reader(std::string(table.manager), std::string(table.record), {}, {}), {}),
                ElementsAre("I", "U", "D"));
  }
}

TEST_F(Audit, RefusesInvalidCalls) {
  const Object manager = erp_.Manager("ServiceTypes.ServiceTypesManager");
  const Object record = erp_.Create("ServiceTypes.ServiceTypes");
  const Object criteria = erp_.Create("audit.auditCriteria");
  const Object period = erp_.Create("audit.period");
  const Object reader = erp_.Create("audit.AuditReader");
  const Object status = erp_.Create("audit.RecordStatus");
  const auto refusal = [](auto work) {
    const Error error = Raised(work);
    return std::to_string(error.Number()) + " " + error.Source() + ": " + error.Description();
  };

  EXPECT_EQ("5 audit.AuditReader: The audit reader was not started. Call initialize first.",
            refusal([&] { reader.Call("hasMoreElements"); }));
  EXPECT_EQ("5 audit.auditCriteria: The audit criteria have no period. Call setPeriod first.",
            refusal([&] { reader.Call("initialize", manager, record, criteria); }));
  criteria.Call("setPeriod", period);
  EXPECT_EQ("5 audit.period: The audit period has no beginning. Call setFrom with a date object.",
            refusal([&] { reader.Call("initialize", manager, record, criteria); }));
  period.Call("setFrom", erp_.Date(At(0)));
  EXPECT_EQ("5 audit.period: The audit period has no end. Call setTo with a date object.",
            refusal([&] { reader.Call("initialize", manager, record, criteria); }));
  period.Call("setTo", erp_.Date(At(24)));
  EXPECT_EQ("13 audit.period: setTo of audit.period takes a date object, but 2026-11-20 was passed.",
            refusal([&] { period.Call("setTo", "2026-11-20"); }));
  EXPECT_EQ(
      "13 audit.Parameter: The parameter must be a audit.Parameter object of the sandbox ERP, but an object was "
      "passed.",
      refusal([&] { criteria.Call("addParameter", period); }));
  EXPECT_EQ(
      "13 Skills.Skills: The record object must be a Skills.Skills object of the sandbox ERP, but an object was "
      "passed.",
      refusal([&] { reader.Call("initialize", erp_.Manager("Skills.SkillsManager"), record, criteria); }));
  EXPECT_EQ("13 OrvanSandbox: The manager must be a manager object of the sandbox ERP, but no object was passed.",
            refusal([&] { reader.Call("initialize", Object(), record, criteria); }));
  EXPECT_EQ(
      "5 ServiceTypes.ServiceTypesManager: ServiceTypes.ServiceTypesManager is not open. Call initialize with "
      "\"OrvanSandbox, PATH\" first.",
      refusal([&] { reader.Call("initialize", erp_.Create("ServiceTypes.ServiceTypesManager"), record, criteria); }));

  reader.Call("initialize", manager, record, criteria);
  EXPECT_EQ("5 audit.AuditReader: There is no further audit entry. Ask hasMoreElements first.",
            refusal([&] { reader.Call("nextElement"); }));
  EXPECT_EQ("13 audit.AuditEntry: The entry must be a audit.AuditEntry object of the sandbox ERP, but x was passed.",
            refusal([&] { status.Call("isDeleted", "x"); }));

  criteria.Call("addOutputField", "dsca");
  EXPECT_EQ("5 audit.AuditReader: The output field \"dsca\" is no column of tsmdm030. Check its name.",
            refusal([&] { reader.Call("initialize", manager, record, criteria); }));
}

TEST_F(Audit, RefusesParametersThatFilterNoKey) {
  const auto start = [&](const Bounds& bound) {
    return Raised([&] {
      Reader("ServiceOrderActivities.ServiceOrderActivitiesManager", "ServiceOrderActivities.ServiceOrderActivities",
             {bound}, {});
    });
  };
  EXPECT_EQ("The audit parameter \"desc\" is no key column of tssoc210. Use \"orno\", \"acln\".",
            start({"desc", "", "Z"}).Description());
  EXPECT_EQ(13, start({"acln", "", "9999"}).Number()) << "no text that holds no number bounds a number";
}

}  // namespace
}  // namespace qmx::test
