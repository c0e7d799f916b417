// Rows as one array for each column: "insert into T (A,B) select * from unnest(?::text[],?::integer[])". What the
// server calls a column's type is what its array is read as, so a value is read as in a plain insert.
#pragma once

#include <memory>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// `otherwise` serves where a column's type has no array.
std::unique_ptr<DriverRows> RowsByUnnest(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise);

// Adds a value to the text of an array, behind a ",".
void AppendToArray(const Variant& value, std::string& array);

}  // namespace qmx
