// Adds rows as arrays of parameters, one array for each column. The driver sends all of them at once.
#pragma once

#include <memory>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// Uses `otherwise` if a column's values may be of any type, if the connection's texts are not UTF-8, and after the
// first batch if that has shown that the driver sends the rows of arrays one by one, as for some tables.
std::unique_ptr<DriverRows> RowsByArrays(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise);

}  // namespace qmx
