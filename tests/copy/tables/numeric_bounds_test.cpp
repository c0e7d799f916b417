// The bounds that are numbers: 16-bit integers and doubles, which read alike in a list of calls.
#include <ostream>

#include "tests/copy/tables/calendar_rig.h"

namespace qmx::test::numeric_bounds {
namespace {

struct Bounds {
  const char* tableName;
  const char* manager;
  const char* listing;
  std::size_t first;  // of the bounds that are numbers
  Variant::Kind kind;
};

std::ostream& operator<<(std::ostream& out, const Bounds& bounds) { return out << bounds.tableName; }

class NumericBounds : public testing::TestWithParam<Bounds> {};

TEST_P(NumericBounds, HaveTheKindThatTheErpExpects) {
  CalendarRig rig;
  rig.Employee("4711", "DAY");
  std::vector<Variant::Kind> kinds;
  rig.erp.ListsBy(
      GetParam().manager,
      [&](ScriptedObject::Arguments bounds) {
        for (const Argument& bound : bounds.subspan(GetParam().first)) kinds.push_back(bound.Value().GetKind());
        return std::vector<Getters>{};
      },
      GetParam().listing);
  rig.Run(GetParam().tableName);
  EXPECT_THAT(kinds, ElementsAre(GetParam().kind, GetParam().kind));
}

INSTANTIATE_TEST_SUITE_P(
    OfTheTables, NumericBounds,
    testing::Values(
        Bounds{"tscfg200", "ServiceObjects.ServiceObjectsManager", "List", 4, Variant::Kind::Int16},
        Bounds{"tsspc200", "PlannedActivities.PlannedActivitiesManager", "List", 4, Variant::Kind::Int16},
        Bounds{"tssoc210", "ServiceOrderActivities.ServiceOrderActivitiesManager", "List", 2, Variant::Kind::Int16},
        Bounds{"tssoc205", "ServiceOrderEngineers.ServiceOrderEngineersManager", "List", 2, Variant::Kind::Int16},
        Bounds{"tsclm024", "PriorityTimeScale.PriorityTimeScaleManager", "List", 0, Variant::Kind::Double},
        Bounds{"tcccp030", kCalendarManager, "listActualCalendar", 6, Variant::Kind::Int16},
        Bounds{"tcccp030=DAY=C", kCalendarManager, "listActualCalendar", 6, Variant::Kind::Int16}));

}  // namespace
}  // namespace qmx::test::numeric_bounds
