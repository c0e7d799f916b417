// The listings of all tables, in the order of their codes.
#include "copy/clsDataCopy.h"

namespace qmx {

std::vector<ErpListing> clsDataCopy::ErpListings() {
  return {AvailabilityTypesInErp(),
          CalendarsInErp(),
          AddressesInErp(),
          ObjectsInErp(),
          ConfigurationsInErp(),
          ResponseTimesInErp(),
          PriorityTimeScalesInErp(),
          ServiceTypesInErp(),
          ServiceCentersInErp(),
          ServiceAreasInErp(),
          SkillsInErp(),
          SkillsByEmployeeInErp(),
          ServiceEmployeesInErp(),
          ServiceOrdersInErp(),
          ServiceOrderEngineersInErp(),
          ServiceOrderActivitiesInErp(),
          PlannedActivitiesInErp()};
}

}  // namespace qmx
