#include "copy/erp_listings.h"

namespace qmx {

std::vector<ErpListing> ErpListings() {
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
