// Asks the driver for a table's columns and key.
#pragma once

#include <string>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// Returns an identifier in the quotes of the connection's database.
std::string QuotedName(const OdbcConnection& connection, const std::string& name);

// Describes the table of exactly that name, else one whose name differs in case only. Raises -2147217865 when there is
// none. The key is the primary key, else the best row identifier, else a unique index without nullable columns.
TableDescription DescribeTable(OdbcConnection& connection, const std::string& name);

}  // namespace qmx
