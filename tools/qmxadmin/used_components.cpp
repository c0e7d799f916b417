#include "tools/qmxadmin/used_components.h"

#include <algorithm>

#include "copy/erp_listings.h"

namespace qmx {

std::vector<std::string> UsedProgIds() {
  std::vector<std::string> used;
  const auto add = [&](const char* progId) {
    if (std::find(used.begin(), used.end(), progId) == used.end()) used.emplace_back(progId);
  };
  for (const ErpListing& table : ErpListings()) {
    add(table.manager);
    add(table.record);
  }
  for (const char* progId : kAuditAndDates) add(progId);
  for (const char* progId : kSchedulingServer) add(progId);
  return used;
}

}  // namespace qmx
