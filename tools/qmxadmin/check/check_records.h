// Reads one record of a table through all the getters that a copy calls, and the table's audit trail.
#pragma once

#include <string>
#include <vector>

#include "tools/qmxadmin/check/finding_sink.h"

namespace qmx {

// `calendars` are the codes of the local service employees' calendars.
void CheckRecord(const std::string& table, const std::string& businessComponent,
                 const std::vector<std::string>& calendars, FindingSink& findings);

}  // namespace qmx
