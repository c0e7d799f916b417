// How a full copy lists each of the seventeen tables in the ERP.
#pragma once

#include <vector>

#include "platform/components.h"
#include "platform/variant.h"

namespace qmx {

// A table's classes in the ERP, and its listing.
struct ErpListing {
  const char* table;
  const char* manager;          // ProgID
  const char* record;           // ProgID of the record class
  Member list;                  // the manager's listing call
  std::vector<Variant> bounds;  // its arguments
};

// The listings of all tables, in the order of their codes.
std::vector<ErpListing> ErpListings();

// Each table's source defines its own.
ErpListing ServiceTypesInErp();
ErpListing ServiceCentersInErp();
ErpListing ServiceAreasInErp();
ErpListing SkillsInErp();
ErpListing SkillsByEmployeeInErp();
ErpListing ServiceEmployeesInErp();
ErpListing ConfigurationsInErp();
ErpListing ObjectsInErp();
ErpListing ServiceOrdersInErp();
ErpListing ServiceOrderEngineersInErp();
ErpListing ServiceOrderActivitiesInErp();
ErpListing PlannedActivitiesInErp();
ErpListing ResponseTimesInErp();
ErpListing PriorityTimeScalesInErp();
ErpListing AvailabilityTypesInErp();
ErpListing AddressesInErp();
ErpListing CalendarsInErp();

}  // namespace qmx
