// The managers: what their listings select, and how they hand it out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/sandbox/sandbox_erp.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Listing : public testing::Test {
 protected:
  std::vector<std::string> ServiceTypes(const char* from, const char* to) {
    return Rows(erp_.Manager("ServiceTypes.ServiceTypesManager").Call("List", from, to).ToObject(), {"getServiceType"});
  }

  SandboxErp erp_;
};

TEST_F(Listing, TakesBothBoundsIn) {
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B'), ('C'), ('D')");
  EXPECT_THAT(ServiceTypes("B", "C"), ElementsAre("B", "C"));
}

TEST_F(Listing, IsReadBesideAnotherOneOfTheSameManager) {
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B'), ('C'), ('D')");
  const Object manager = erp_.Manager("ServiceTypes.ServiceTypesManager");
  const Object first = manager.Call("List", "A", "B").ToObject();
  EXPECT_EQ(first.Call("nextElement").ToObject().Call("getServiceType").ToText(), "A");
  EXPECT_THAT(Rows(manager.Call("List", "C", "D").ToObject(), {"getServiceType"}), ElementsAre("C", "D"));
  EXPECT_THAT(Rows(first, {"getServiceType"}), ElementsAre("B"));
}

TEST_F(Listing, StartsFromTheBeginningEvenIfAnEarlierOneWasNotReadToItsEnd) {
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B'), ('C'), ('D')");
  const Object manager = erp_.Manager("ServiceTypes.ServiceTypesManager");
  manager.Call("List", "A", "D").ToObject().Call("nextElement");
  EXPECT_THAT(Rows(manager.Call("List", "B", "C").ToObject(), {"getServiceType"}), ElementsAre("B", "C"));
}

TEST_F(Listing, ComparesTextsByteByByte) {
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES (''), ('10'), ('9'), ('ZZZ'), ('ZZZA'), ('a')");
  EXPECT_THAT(ServiceTypes("", "ZZZ"), ElementsAre("", "10", "9", "ZZZ"));
}

TEST_F(Listing, GivesRecordsInTheOrderOfTheKey) {
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES ('C'), ('A'), ('B')");
  EXPECT_THAT(ServiceTypes("", "ZZZ"), ElementsAre("A", "B", "C"));
}

TEST_F(Listing, GivesAnEnumerationWithoutElementsWhenNothingIsSelected) {
  EXPECT_THAT(ServiceTypes("", "ZZZ"), IsEmpty());
}

TEST_F(Listing, OfPriorityTimeScalesComparesNumbers) {
  erp_.Run("INSERT INTO tsclm024 (sltt) VALUES (9), (90.5), (100), (99999.9999), (100000)");
  const Object manager = erp_.Manager("PriorityTimeScale.PriorityTimeScaleManager");
  EXPECT_THAT(Rows(manager.Call("List", 0.0, 99999.9999).ToObject(), {"getSolutionTimeInMinutes"}),
              ElementsAre("9", "90.5", "100", "99999.9999"));
}

TEST_F(Listing, OfSkillsByEmployeeNarrowsEmployeeSkillAndObjectGroup) {
  erp_.Run(
      "INSERT INTO tsmdm135 (emno, skll, cogr) VALUES ('E1', 'S1', 'G1'), ('E1', 'S2', 'G1'), ('E2', 'S1', 'G2'), "
      "('E2', 'S1', 'G3')");
  const Object manager = erp_.Manager("SkillsByEmployee.SkillsByEmployeeManager");
  const auto list = [&](const char* employee, const char* skill, const char* group) {
    return Rows(manager.Call("List", "", employee, "", skill, "", group).ToObject(),
                {"getserviceemployee", "getSkill", "getObjectGroup"});
  };
  EXPECT_THAT(list("Z", "Z", "Z"), ElementsAre("E1|S1|G1", "E1|S2|G1", "E2|S1|G2", "E2|S1|G3"));
  EXPECT_THAT(list("E1", "Z", "Z"), ElementsAre("E1|S1|G1", "E1|S2|G1"));
  EXPECT_THAT(list("Z", "S1", "Z"), ElementsAre("E1|S1|G1", "E2|S1|G2", "E2|S1|G3"));
  EXPECT_THAT(list("Z", "Z", "G2"), ElementsAre("E1|S1|G1", "E1|S2|G1", "E2|S1|G2"));
}

TEST_F(Listing, OfServiceEmployeesNarrowsEmployeeCenterAndArea) {
  erp_.Run("INSERT INTO tsmdm140 (emno, cwoc, csar) VALUES ('E1', 'C1', 'A1'), ('E2', 'C2', 'A1'), ('E3', 'C1', 'A2')");
  const Object manager = erp_.Manager("ServiceEmployees.ServiceEmployeesManager");
  const auto list = [&](auto... bounds) {
    return Rows(manager.Call("List", bounds...).ToObject(), {"getserviceemployee"});
  };
  EXPECT_THAT(list("E2", "E2", "", "ZZZZZZZZZ", "", "ZZZZZZZZZ"), ElementsAre("E2"));
  EXPECT_THAT(list("", "Z", "C1", "C1", "", "Z"), ElementsAre("E1", "E3"));
  EXPECT_THAT(list("", "Z", "", "Z", "A1", "A1"), ElementsAre("E1", "E2"));
}

TEST_F(Listing, OfConfigurationsNarrowsConfigurationPartnerCenterAndArea) {
  erp_.Run(
      "INSERT INTO tscfg220 (ccfg, ofbp, cwoc, csar) VALUES ('1', 'P1', 'C1', 'A1'), ('2', 'P2', 'C1', 'A1'), "
      "('3', 'P1', 'C2', 'A1'), ('4', 'P1', 'C1', 'A2')");
  const Object manager = erp_.Manager("Configurations.ConfigurationsManager");
  const auto list = [&](auto... bounds) {
    return Rows(manager.Call("List", bounds...).ToObject(), {"getConfiguration"});
  };
  EXPECT_THAT(list("2", "3", "", "Z", "", "Z", "", "Z"), ElementsAre("2", "3"));
  EXPECT_THAT(list("", "Z", "P2", "P2", "", "Z", "", "Z"), ElementsAre("2"));
  EXPECT_THAT(list("", "Z", "", "Z", "C2", "C2", "", "Z"), ElementsAre("3"));
  EXPECT_THAT(list("", "Z", "", "Z", "", "Z", "A2", "A2"), ElementsAre("4"));
}

TEST_F(Listing, OfServiceObjectsTakesSmallIntegersForTheObjectNumber) {
  erp_.Run("INSERT INTO tscfg200 (ccfg, crob, oseq) VALUES ('C', 'O', 9), ('C', 'O', 10), ('C', 'O', 10000)");
  const Object manager = erp_.Manager("ServiceObjects.ServiceObjectsManager");
  const Variant low = std::int16_t{0};
  const Variant high = std::int16_t{9999};
  EXPECT_THAT(Rows(manager.Call("List", "", "Z", "", "Z", low, high).ToObject(), {"getObjectNumber"}),
              ElementsAre("9", "10"));
}

TEST_F(Listing, OfOrdersHasItsOwnName) {
  erp_.Run("INSERT INTO tssoc200 (orno) VALUES ('SO1'), ('SO2')");
  const Object manager = erp_.Manager("ServiceOrders.ServiceOrdersManager");
  EXPECT_THAT(Rows(manager.Call("listServiceOrders", "SO2", "SO2").ToObject(), {"getServiceOrder"}),
              ElementsAre("SO2"));
  EXPECT_EQ(438, Raised([&] { manager.Call("List", "", "Z"); }).Number());
}

TEST_F(Listing, OfOrderLinesNarrowsOrderAndLine) {
  erp_.Run("INSERT INTO tssoc210 (orno, acln) VALUES ('SO1', 10), ('SO1', 20), ('SO2', 10)");
  erp_.Run("INSERT INTO tssoc205 (orno, line) VALUES ('SO1', 1), ('SO1', 2), ('SO2', 1)");
  EXPECT_THAT(Rows(erp_.Manager("ServiceOrderActivities.ServiceOrderActivitiesManager")
                       .Call("List", "SO1", "SO1", 20, 9999)
                       .ToObject(),
                   {"getServiceOrder", "getActivityLineNumber"}),
              ElementsAre("SO1|20"));
  EXPECT_THAT(
      Rows(erp_.Manager("ServiceOrderEngineers.ServiceOrderEngineersManager").Call("List", "", "Z", 0, 1).ToObject(),
           {"getServiceOrder", "getLineNumber"}),
      ElementsAre("SO1|1", "SO2|1"));
}

TEST_F(Listing, OfPlannedActivitiesNarrowsConfigurationActivityAndNumber) {
  erp_.Run("INSERT INTO tsspc200 (ccfg, crac, aseq) VALUES ('C1', 'A1', 10), ('C1', 'A2', 10), ('C2', 'A1', 20)");
  const Object manager = erp_.Manager("PlannedActivities.PlannedActivitiesManager");
  EXPECT_THAT(Rows(manager.Call("List", "", "Z", "A1", "A1", 0, 9999).ToObject(), {"getConfiguration", "getActivity"}),
              ElementsAre("C1|A1", "C2|A1"));
  EXPECT_THAT(Rows(manager.Call("List", "", "Z", "", "Z", 0, 10).ToObject(), {"getConfiguration", "getActivity"}),
              ElementsAre("C1|A1", "C1|A2"));
}

TEST_F(Listing, OfAvailabilityTypesHasItsOwnName) {
  erp_.Run("INSERT INTO tcccp001 (ract) VALUES ('OVT'), ('WRK')");
  const Object manager = erp_.Manager("AvailabilityType.AvailabilityTypeManager");
  EXPECT_THAT(Rows(manager.Call("ListAllAvailable", "", "ZZZZZZ").ToObject(), {"getavailabilityType"}),
              ElementsAre("OVT", "WRK"));
}

class CalendarListing : public Listing {
 protected:
  CalendarListing() {
    erp_.Run(
        "INSERT INTO tcccp030 (ccal, ract, stdt, sttm) VALUES ('C1', 'WRK', '2026-01-05', 800), "
        "('C1', 'WRK', '2026-09-30', 800), ('C1', 'OVT', '2026-10-01', 1700), ('C1', 'WRK', '2038-03-01', 800), "
        "('C1', 'WRK', '2038-03-02', 800), ('C2', 'WRK', '2026-09-30', 2400)");
  }
  std::vector<std::string> List(const char* calendar, const char* from, const char* to, int startTo = 2400) {
    return Rows(erp_.Manager("Calendars.CalendarManager")
                    .Call("listActualCalendar", calendar, calendar, "", "ZZZZZZZZZ", from, to, std::int16_t{0}, startTo)
                    .ToObject(),
                {"getCalendar", "getStartDate", "getStartTime"});
  }
};

TEST_F(CalendarListing, ReadsDatesWithAndWithoutLeadingZeros) {
  EXPECT_THAT(List("C1", "2026-1-5", "2026-9-30"), ElementsAre("C1|2026-01-05|800", "C1|2026-09-30|800"));
  EXPECT_THAT(List("C1", "2026-01-06", "2026-10-01"), ElementsAre("C1|2026-10-01|1700", "C1|2026-09-30|800"));
}

TEST_F(CalendarListing, CountsADayThatDoesNotExistAsTheNextOne) {
  EXPECT_THAT(List("C1", "2038-02-28", "2038-02-29"), ElementsAre("C1|2038-03-01|800"));
  EXPECT_THAT(List("C1", "2038-2-30", "2038-2-30"), ElementsAre("C1|2038-03-02|800"));
}

TEST_F(CalendarListing, TakesAStartAtTheEndOfTheDay) {
  EXPECT_THAT(List("C2", "2026-9-1", "2038-1-1"), ElementsAre("C2|2026-09-30|2400"));
  EXPECT_THAT(List("C2", "2026-9-1", "2038-1-1", 2359), IsEmpty());
}

TEST_F(CalendarListing, NeedsDatesForDates) {
  EXPECT_EQ(13, Raised([&] { List("C1", "yesterday", "2026-01-01"); }).Number());
  EXPECT_EQ(13, Raised([&] { List("C1", "2026-13-01", "2026-01-01"); }).Number());
}

TEST_F(Listing, KeepsARecordAsItWasWhenTheEnumerationMovesOn) {
  erp_.Run("INSERT INTO tsmdm030 (cstp, \"desc\") VALUES ('A', 'first'), ('B', 'second')");
  const Object types = erp_.Manager("ServiceTypes.ServiceTypesManager").Call("List", "", "ZZZ").ToObject();
  const Object first = types.Call("nextElement").ToObject();
  const Object second = types.Call("nextElement").ToObject();
  EXPECT_FALSE(types.Call("hasMoreElements").ToBoolean());
  EXPECT_EQ("first", first.Call("getServiceTypeDescription").ToText());
  EXPECT_EQ("second", second.Call("getServiceTypeDescription").ToText());
}

TEST_F(Listing, GoesOnAfterItsManagerIsClosed) {
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B')");
  const Object manager = erp_.Manager("ServiceTypes.ServiceTypesManager");
  const Object types = manager.Call("List", "", "ZZZ").ToObject();
  manager.Call("Close");
  EXPECT_THAT(Rows(types, {"getServiceType"}), ElementsAre("A", "B"));
}

TEST_F(Listing, ShowsTheTableAsItWasWhenReadingBegan) {
  erp_.Run("INSERT INTO tsmdm030 (cstp) VALUES ('A'), ('B')");
  const Object types = erp_.Manager("ServiceTypes.ServiceTypesManager").Call("List", "", "ZZZ").ToObject();
  EXPECT_TRUE(types.Call("hasMoreElements").ToBoolean());
  erp_.Run("DELETE FROM tsmdm030 WHERE cstp = 'B'; INSERT INTO tsmdm030 (cstp) VALUES ('C')");
  EXPECT_THAT(Rows(types, {"getServiceType"}), ElementsAre("A", "B"));
}

}  // namespace
}  // namespace qmx::test
