// Rows as arrays of parameters, one array for each column: the driver sends them in one go.
#pragma once

#include <memory>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// `otherwise` serves where a column's values may be of any type and where the connection's texts are not UTF-8. It also
// does once the first batch has shown that the driver sends the rows of arrays one by one, as some must.
std::unique_ptr<DriverRows> RowsByArrays(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise);

}  // namespace qmx
