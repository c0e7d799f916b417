// Midnights that an older release stored without a time of day, "2026-11-05" instead of "2026-11-05 00:00:00".
//
// Only a database that keeps moments as texts can hold any. Counted are the moment columns of the local tables, as far
// as the database declares them as moments too.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/database_driver.h"
#include "schema/local_tables.h"

namespace qmx {

// Returns how many the table holds; 0 where it is missing.
std::int64_t CountOldMidnights(DriverSession& session, const LocalTable& table);

// Adds the time of day to the midnights of all local tables, in one transaction. Returns the tables that held some,
// with how many there were. Raises, and changes nothing, when a statement fails.
std::vector<std::pair<std::string, std::int64_t>> RewriteOldMidnights(DriverSession& session);

}  // namespace qmx
