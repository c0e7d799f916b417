// The records: every getter that a copy asks for, in the lettering in which it asks, and the column behind it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/sandbox/sandbox_erp.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

struct Getter {
  const char* name;
  const char* column;
};

struct RecordClass {
  const char* code;
  const char* manager;
  const char* list;
  int bounds;
  std::vector<Getter> getters;
};

const RecordClass kClasses[] = {
    {"tsmdm030",
     "ServiceTypes.ServiceTypesManager",
     "List",
     1,
     {{"getServiceType", "cstp"},
      {"getServiceTypeDescription", "desc"},
      {"getServiceProcedure", "proc"},
      {"getavailabilityType", "ract"}}},
    {"tsmdm100",
     "ServiceCenters.ServiceCentersManager",
     "List",
     1,
     {{"getServiceCentersCode", "cwoc"},
      {"getdescription", "desc"},
      {"getServiceCenterType", "wctp"},
      {"getMainServiceCenter", "cmwc"},
      {"getWarehouse", "cwar"},
      {"getLaborRate", "clrt"},
      {"getFieldOfSupport", "srtp"},
      {"getSalesRepresentative", "srep"}}},
    {"tsmdm105",
     "ServiceAreas.ServiceAreasManager",
     "List",
     1,
     {{"getServiceArea", "csar"},
      {"getServiceAreaDescription", "desc"},
      {"getServiceAreaType", "artp"},
      {"getMainServiceArea", "cmsa"},
      {"getServiceCenter", "cwoc"},
      {"getWarehouse", "cwar"},
      {"getAverageTravelingTime", "trti"},
      {"getAverageTravelingDistance", "dist"},
      {"getCallOutCharge", "ccha"},
      {"getCurrency", "ccur"},
      {"getLaborRate", "clrt"}}},
    {"tsmdm130",
     "Skills.SkillsManager",
     "List",
     1,
     {{"getSkill", "skll"}, {"getdescription", "desc"}, {"getLaborRate", "clrt"}}},
    {"tsmdm135",
     "SkillsByEmployee.SkillsByEmployeeManager",
     "List",
     3,
     {{"getserviceemployee", "emno"}, {"getSkill", "skll"}, {"getObjectGroup", "cogr"}, {"getSkillFactor", "afct"}}},
    {"tsmdm140",
     "ServiceEmployees.ServiceEmployeesManager",
     "List",
     3,
     {{"getserviceemployee", "emno"},
      {"getServiceEmployeeName", "desc"},
      {"getServiceCenter", "cwoc"},
      {"getCalendarCode", "ccal"},
      {"getForeman", "frmn"},
      {"getServiceArea", "csar"},
      {"getServiceCar", "ccar"},
      {"getLoginCode", "user"},
      {"getMaximumOvertimePerDay", "mopd"}}},
    {"tsclm020",
     "ResponseTimes.ResponseTimesManager",
     "List",
     1,
     {{"getResponseTime", "crtc"},
      {"getResponseTimeDescription", "desc"},
      {"getCalendar", "ccal"},
      {"getReactionPeriod", "rctt"},
      {"getSolutionStartPeriod", "enst"},
      {"getSolutionFinishPeriod", "sltn"}}},
    {"tccom130",
     "Addresses.AddressesManager",
     "List",
     1,
     {{"getAddressCode", "cadr"},
      {"getName", "nama"},
      {"getAddress", "namc"},
      {"getHouseNumber", "hono"},
      {"getCity", "name"},
      {"getZIPCodePostalCode", "pstc"}}},
    {"tcccp001",
     "AvailabilityType.AvailabilityTypeManager",
     "ListAllAvailable",
     1,
     {{"getavailabilityType", "ract"},
      {"getdescription", "dsca"},
      {"getplanTimeUnit", "ptmu"},
      {"getnoOfHoursPerDay", "hrsd"},
      {"getavailable", "avlb"}}},
    {"tscfg220",
     "Configurations.ConfigurationsManager",
     "List",
     4,
     {{"getConfiguration", "ccfg"},
      {"getdescription", "desc"},
      {"getSoldToBusinessPartner", "ofbp"},
      {"getServiceCenter", "cwoc"},
      {"getServiceArea", "csar"},
      {"getResponsibleEngineer", "tecr"},
      {"getPreferredEngineer1", "teca"},
      {"getPreferredEngineer2", "tecb"},
      {"getUsageClass", "cusc"},
      {"getDistanceZone", "czon"},
      {"getTravelDistance", "dist"},
      {"getTravelingTime", "trti"},
      {"getCalendar", "ccal"},
      {"getLocationAddress", "cadr"}}},
    {"tssoc200",
     "ServiceOrders.ServiceOrdersManager",
     "listServiceOrders",
     1,
     {{"getServiceOrder", "orno"},
      {"getConfiguration", "ccfg"},
      {"getSoldToBusinessPartner", "ofbp"},
      {"getSoldToBusinessPartnerName", "stna"},
      {"getLocationAddress", "lcad"},
      {"getProject", "cprj"},
      {"getOrderStatus", "osta"},
      {"getServiceCenter", "cwoc"},
      {"getServiceArea", "csar"},
      {"getServiceEngineer", "emno"},
      {"getBlocked", "blyn"},
      {"getInterrupted", "ityn"},
      {"getInterruptionReason", "crit"},
      {"getOrderDuration", "ordu"},
      {"getTravelDuration", "tvdu"},
      {"getOvertime", "otim"},
      {"getAppointment", "appo"},
      {"getRescheduleWithDetailSRP", "rsrp"},
      {"getServiceContract", "csco"},
      {"getServiceOrderQuotation", "csqu"},
      {"getShipToBusinessPartner", "stbp"},
      {"getEmergencyOrder", "emer"},
      {"getPageFrequency", "minu"}}},
};

// A value of its own for every column: the column's name and "x" for texts, its place in the list for numbers.
std::string ValueOf(const RecordClass& tested, std::size_t place) {
  const std::string column = tested.getters[place].column;
  const bool text = orvan::FindTable(tested.code)->At(column).type == orvan::ColumnType::Text;
  return text ? column + "x" : std::to_string(place);
}

Object FirstOrder(SandboxErp& erp) {
  const Object manager = erp.Manager("ServiceOrders.ServiceOrdersManager");
  return manager.Call("listServiceOrders", "", "Z").ToObject().Call("nextElement").ToObject();
}

TEST(Record, HasAGetterForEveryColumn) {
  for (const RecordClass& tested : kClasses) {
    SCOPED_TRACE(tested.code);
    SandboxErp erp;
    std::string names;
    std::string values;
    for (std::size_t i = 0; i < tested.getters.size(); ++i) {
      names.append(i ? ", \"" : "\"").append(tested.getters[i].column).append("\"");
      values.append(i ? ", '" : "'").append(ValueOf(tested, i)).append("'");
    }
    std::string insert = "INSERT INTO ";
    erp.Run(insert.append(tested.code).append(" (").append(names).append(") VALUES (").append(values).append(")"));

    const Object manager = erp.Manager(tested.manager);
    std::vector<Argument> bounds;
    for (int i = 0; i < tested.bounds; ++i) bounds.insert(bounds.end(), {Variant(""), Variant("zzz")});
    const Object records = Invoke(manager, tested.list, bounds).ToObject();
    ASSERT_TRUE(records.Call("hasMoreElements").ToBoolean());
    const Object record = records.Call("nextElement").ToObject();
    for (std::size_t i = 0; i < tested.getters.size(); ++i)
      EXPECT_EQ(ValueOf(tested, i), record.Call(tested.getters[i].name).ToText()) << tested.getters[i].name;
  }
}

TEST(Record, OfAServiceObjectHasAGetterForEveryColumn) {
  SandboxErp erp;
  erp.Run("INSERT INTO tscfg200 VALUES ('CF', 'OB', 7, 'Pump', 'PUMP', 'DAY', 'Arvo', 'CAL1', 'AD1')");
  EXPECT_EQ("CF|OB|7|Pump|PUMP|DAY|Arvo|CAL1|AD1",
            Rows(erp.Manager("ServiceObjects.ServiceObjectsManager").Call("List", "", "Z", "", "Z", 0, 9).ToObject(),
                 {"getConfiguration", "getServiceObject", "getObjectNumber", "getdescription", "getObjectGroup",
                  "getUsageClass", "getManufacturedBy", "getCalendar", "getLocationAddress"})
                .at(0));
}

TEST(Record, OfAnActivityHasAGetterForEveryColumn) {
  SandboxErp erp;
  erp.Run(
      "INSERT INTO tssoc210 VALUES ('SO', 10, 'RA', 'Leaks', 'REP', 'AG', 'CF', 'OB', 3, 'CL', 'R04', 1, 2, 4, 'PR', "
      "'SOL', 20, 'K1', 'K2', 'K3', 1.5, 1, '2026-11-20 08:00:00', '2026-11-20 09:00:00', '2026-11-20 07:00:00', "
      "'2026-11-21 00:00:00', '2026-11-20 08:05:00', NULL)");
  const Object records =
      erp.Manager("ServiceOrderActivities.ServiceOrderActivitiesManager").Call("List", "", "Z", 0, 9999).ToObject();
  const Object record = records.Call("nextElement").ToObject();
  const auto text = [&](const char* getter) { return record.Call(getter).ToText(); };
  EXPECT_EQ("SO|10|RA|Leaks|REP|AG|CF", text("getServiceOrder") + '|' + text("getActivityLineNumber") + '|' +
                                            text("getReferenceActivity") + '|' + text("getdescription") + '|' +
                                            text("getServiceType") + '|' + text("getActivityGroup") + '|' +
                                            text("getConfiguration"));
  EXPECT_EQ("OB|3|CL|R04|1|2|4", text("GetObject") + '|' + text("getObjectNumber") + '|' + text("getCall") + '|' +
                                     text("getResponseTime") + '|' + text("getProblemPriority") + '|' +
                                     text("getCustomerPriority") + '|' + text("getObjectPriority"));
  EXPECT_EQ("PR|SOL|20|K1|K2|K3|1.5|1", text("getProblem") + '|' + text("getSolution") + '|' +
                                            text("getActivityStatus") + '|' + text("getSkill1") + '|' +
                                            text("getSkill2") + '|' + text("getSkill3") + '|' +
                                            text("getActivityDuration") + '|' + text("getAppointment"));
  const auto date = [&](const char* getter) { return Parts(record.Call(getter).ToObject()); };
  EXPECT_EQ("126-10-20 8:0:0", date("getPlannedStartTime"));
  EXPECT_EQ("126-10-20 9:0:0", date("getPlannedFinishTime"));
  EXPECT_EQ("126-10-20 7:0:0", date("getPlannedEarliestStartTime"));
  EXPECT_EQ("126-10-21 0:0:0", date("getPlannedLatestFinishTime"));
  EXPECT_EQ("126-10-20 8:5:0", date("getExecutionStartTime"));
  EXPECT_EQ("0-0-1 0:0:0", date("getExecutionFinishTime"));
}

TEST(Record, OfAnEngineerHasAGetterForEveryColumn) {
  SandboxErp erp;
  erp.Run("INSERT INTO tssoc205 VALUES ('SO', 2, 'E1', 10)");
  EXPECT_EQ(
      "SO|2|E1|10",
      Rows(erp.Manager("ServiceOrderEngineers.ServiceOrderEngineersManager").Call("List", "", "Z", 0, 9).ToObject(),
           {"getServiceOrder", "getLineNumber", "getServiceEngineer", "getActivity"})
          .at(0));
}

TEST(Record, OfAPlannedActivityHasAGetterForEveryColumn) {
  SandboxErp erp;
  erp.Run(
      "INSERT INTO tsspc200 VALUES ('CF', 'AC', 10, 'Upkeep', 'AG', 'PRV', 'SC01', 'OB', 3, '2026-12-01 07:00:00', "
      "NULL, '2026-12-01 09:30:15', '2026-12-31 00:00:00', 2.5, 45, 'K1', 'K2', 'K3', 2, 20, 'SO', 30)");
  const Object manager = erp.Manager("PlannedActivities.PlannedActivitiesManager");
  const Object records = manager.Call("List", "", "Z", "", "Z", 0, 9999).ToObject();
  const Object record = records.Call("nextElement").ToObject();
  const auto date = [&](const char* getter) { return Parts(record.Call(getter).ToObject()); };
  EXPECT_EQ("126-11-1 7:0:0", date("getEarliestStartTime"));
  EXPECT_EQ("0-0-1 0:0:0", date("getPlannedStartTime"));
  EXPECT_EQ("126-11-1 9:30:15", date("getPlannedFinishTime"));
  EXPECT_EQ("126-11-31 0:0:0", date("getLatestFinishTime"));
  EXPECT_EQ("CF|AC|10|Upkeep|AG|PRV|SC01|OB|3|2.5|45|K1|K2|K3|2|20|SO|30",
            Rows(manager.Call("List", "", "Z", "", "Z", 0, 9999).ToObject(),
                 {"getConfiguration", "getActivity", "getActivityNumber", "getdescription", "getActivityGroup",
                  "getServiceType", "getServiceCenter", "GetObject", "getObjectNumber", "getActivityDuration",
                  "getTravelingTime", "getSkill1", "getSkill2", "getSkill3", "getAppointment", "getActivityStatus",
                  "getServiceOrder", "getActivityLineNumber"})
                .at(0));
}

TEST(Record, OfAnOrderGivesDateObjectsForPointsInTime) {
  SandboxErp erp;
  erp.Run(
      "INSERT INTO tssoc200 (orno, ordt, pstm, pftm, estm, lftm, tstm, astm, aftm, ract) VALUES ('SO', "
      "'2026-01-31 23:59:59', '2026-03-29 02:30:00', '2026-10-25 02:30:00', '1999-12-31 00:00:00', "
      "'2000-02-29 00:00:01', '2026-11-20 07:00:00', '2026-11-20 08:00:00', '2026-11-20 09:00:00', NULL)");
  const Object record = FirstOrder(erp);
  const auto date = [&](const char* getter) { return Parts(record.Call(getter).ToObject()); };
  EXPECT_EQ("126-0-31 23:59:59", date("getOrderDate"));
  EXPECT_EQ("126-2-29 2:30:0", date("getPlannedStartTime")) << "an hour that a zone with summer time does not have";
  EXPECT_EQ("126-9-25 2:30:0", date("getPlannedFinishTime"));
  EXPECT_EQ("99-11-31 0:0:0", date("getPlannedEarliestStartTime"));
  EXPECT_EQ("100-1-29 0:0:1", date("getPlannedLatestFinishTime"));
  EXPECT_EQ("126-10-20 7:0:0", date("getActualTravelStartTime"));
  EXPECT_EQ("126-10-20 8:0:0", date("getExecutionStartTime"));
  EXPECT_EQ("126-10-20 9:0:0", date("getExecutionFinishTime"));
  EXPECT_EQ("0-0-1 0:0:0", date("getDispatchTime")) << "year 0 and month 0 say that there is no date";
}

TEST(Record, KeepsADateObjectAsItWasWhenAnotherIsAskedFor) {
  SandboxErp erp;
  erp.Run("INSERT INTO tssoc200 (orno, ordt, pstm) VALUES ('SO', '2026-01-31 23:59:59', '2026-03-29 02:30:00')");
  const Object record = FirstOrder(erp);
  const Object ordered = record.Call("getOrderDate").ToObject();
  const Object planned = record.Call("getPlannedStartTime").ToObject();
  EXPECT_EQ("126-0-31 23:59:59", Parts(ordered));
  EXPECT_EQ("126-2-29 2:30:0", Parts(planned));
}

TEST(Record, OfACalendarGivesDateTimesForDays) {
  SandboxErp erp;
  erp.Run("INSERT INTO tcccp030 VALUES ('C1', 'WRK', '2026-11-20', 2200, '2026-11-21', 2400, 12.5, 10.625)");
  const Object record = erp.Manager("Calendars.CalendarManager")
                            .Call("listActualCalendar", "C1", "C1", "", "Z", "2026-1-1", "2038-1-1", 0, 2400)
                            .ToObject()
                            .Call("nextElement")
                            .ToObject();
  EXPECT_EQ(Variant(DateTime::FromDate(2026, 11, 20)), record.Call("getStartDate"));
  EXPECT_EQ(Variant(DateTime::FromDate(2026, 11, 21)), record.Call("getEndDate"));
  EXPECT_EQ(Variant(2200), record.Call("getStartTime"));
  EXPECT_EQ(Variant(2400), record.Call("getEndTime"));
  EXPECT_EQ(Variant(12.5), record.Call("getCumulativeTime"));
  EXPECT_EQ(Variant(10.625), record.Call("getCumulativeCapacity"));
  EXPECT_EQ(Variant("C1"), record.Call("getCalendar"));
  EXPECT_EQ(Variant("WRK"), record.Call("getavailabilityType"));
}

TEST(Record, GivesAPriorityTimeScaleAsADouble) {
  SandboxErp erp;
  erp.Run("INSERT INTO tsclm024 VALUES (90.5, 'One and a half hours')");
  const Object record = erp.Manager("PriorityTimeScale.PriorityTimeScaleManager")
                            .Call("List", 0.0, 99999.9999)
                            .ToObject()
                            .Call("nextElement")
                            .ToObject();
  EXPECT_EQ(Variant(90.5), record.Call("getSolutionTimeInMinutes"));
  EXPECT_EQ(Variant("One and a half hours"), record.Call("getdescription"));
}

TEST(Record, GivesTextsUnchanged) {
  SandboxErp erp;
  erp.Run("INSERT INTO tsmdm030 VALUES (' Ü', 'O''Neill \"& Søn\" ', '', 'x' || char(10) || 'y')");
  EXPECT_EQ(" Ü|O'Neill \"& Søn\" ||x\ny",
            Rows(erp.Manager("ServiceTypes.ServiceTypesManager").Call("List", "", "ZZZ").ToObject(),
                 {"getServiceType", "getServiceTypeDescription", "getServiceProcedure", "getavailabilityType"})
                .at(0));
}

TEST(Record, GivesAValueEvenIfItIsNotOfItsColumnsType) {
  SandboxErp erp;
  erp.Run("INSERT INTO tsmdm130 VALUES ('S1', 'Welding', 'cheap'), ('S2', 'Painting', 30)");
  EXPECT_THAT(
      Rows(erp.Manager("Skills.SkillsManager").Call("List", "", "ZZZ").ToObject(), {"getSkill", "getLaborRate"}),
      testing::ElementsAre("S1|cheap", "S2|30"));
}

TEST(Record, KnowsItsClass) {
  SandboxErp erp;
  const Object type = erp.Create("ServiceTypes.ServiceTypes").Call("getClass").ToObject();
  EXPECT_EQ("ServiceTypes.ServiceTypes", type.Call("getName").ToText());
}

TEST(Record, ThatWasOnlyMadeIsBlank) {
  SandboxErp erp;
  EXPECT_EQ(Variant(""), erp.Create("ServiceTypes.ServiceTypes").Call("getServiceType"));
  EXPECT_EQ(Variant(0), erp.Create("ServiceOrders.ServiceOrders").Call("getOrderStatus"));
  EXPECT_EQ(Variant(0.0), erp.Create("Skills.Skills").Call("getLaborRate"));
  EXPECT_EQ(Variant(DateTime()), erp.Create("Calendars.ActualCalendar").Call("getEndDate"));
  EXPECT_EQ("0-0-1 0:0:0", Parts(erp.Create("ServiceOrders.ServiceOrders").Call("getOrderDate").ToObject()));
}

TEST(Record, GivesNullIfTheFileHasNullInsteadOfABlank) {
  SandboxErp erp;
  erp.Run("CREATE TABLE loose AS SELECT * FROM tsmdm130; DROP TABLE tsmdm130; ALTER TABLE loose RENAME TO tsmdm130");
  erp.Run("INSERT INTO tsmdm130 VALUES ('S1', NULL, NULL)");
  const Object record =
      erp.Manager("Skills.SkillsManager").Call("List", "", "ZZZ").ToObject().Call("nextElement").ToObject();
  EXPECT_TRUE(record.Call("getdescription").IsNull());
  EXPECT_TRUE(record.Call("getLaborRate").IsNull());
}

TEST(Record, RaisesForAPointInTimeThatIsNone) {
  SandboxErp erp;
  erp.Run("INSERT INTO tssoc200 (orno, ordt) VALUES ('SO1', 'soon')");
  const Object record = FirstOrder(erp);
  const Error error = Raised([&] { record.Call("getOrderDate"); });
  EXPECT_EQ(13, error.Number());
  EXPECT_EQ("ServiceOrders.ServiceOrders", error.Source());
  EXPECT_EQ(
      "Column ordt of tssoc200, record orno=SO1, holds no date. Correct it in the sandbox file, as \"2026-11-20 "
      "14:05:09\".",
      error.Description());
}

}  // namespace
}  // namespace qmx::test
