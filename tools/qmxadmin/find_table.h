// Looks up a table that may be missing.
#pragma once

#include <optional>
#include <string>

#include "platform/database.h"

namespace qmx {

// Returns the table's description, or nothing if there is no such table.
std::optional<TableDescription> FindTable(Connection& connection, const std::string& name);

}  // namespace qmx
