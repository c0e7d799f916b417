// Whether a table is there.
#pragma once

#include <optional>
#include <string>

#include "platform/database.h"

namespace qmx {

std::optional<TableDescription> FindTable(Connection& connection, const std::string& name);

}  // namespace qmx
