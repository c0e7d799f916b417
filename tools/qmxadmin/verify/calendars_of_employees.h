// The calendars that the local service employees have. The ERP lists calendars by these codes.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/local_database.h"

namespace qmx {

std::vector<std::string> CalendarsOfEmployees(LocalDatabase& local);

}  // namespace qmx
