// What the driver says of a table's columns and key.
#pragma once

#include <string>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// An identifier between the quotes of the connection's database.
std::string QuotedName(const OdbcConnection& connection, const std::string& name);

// The table of that name, in any case where no other has it in the same letters; -2147217865 when there is none. Its
// key is the primary key, else the best row identifier, else a unique index in which no null can stand.
TableDescription DescribeTable(OdbcConnection& connection, const std::string& name);

}  // namespace qmx
