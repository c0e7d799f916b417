// Rows as arrays of parameters, one array for each column: the driver sends them in one go.
#pragma once

#include <memory>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// Drivers take arrays and send their rows one by one where the server cannot do better. That is found out with the
// first batch, and `otherwise` serves from then on; it does also where a column's values may be of any type.
std::unique_ptr<DriverRows> RowsByArrays(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise);

}  // namespace qmx
