// Checks that the user may read and write a table.
#pragma once

#include <optional>
#include <string>

#include "platform/error.h"
#include "schema/local_tables.h"
#include "tools/qmxadmin/local_database.h"

namespace qmx {

struct MissingRight {
  std::string statement;  // "select", "insert", "update" or "delete"
  Error error;            // of the database
};

// Runs one statement of each kind that changes no row. Returns the first one that the database refuses.
std::optional<MissingRight> FindMissingRight(LocalDatabase& local, const LocalTable& table);

}  // namespace qmx
