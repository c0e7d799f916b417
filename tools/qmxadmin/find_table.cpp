#include "tools/qmxadmin/find_table.h"

#include "platform/error.h"

namespace qmx {

std::optional<TableDescription> FindTable(Connection& connection, const std::string& name) {
  try {
    return connection.Describe(name);
  } catch (const Error& error) {
    if (error.Number() != errors::kNoSuchTable) throw;
    return std::nullopt;
  }
}

}  // namespace qmx
