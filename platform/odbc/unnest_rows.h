// Rows as one array for each column: "insert into T (A,B) select unnest(?::text[]),unnest(?::integer[])". An array is
// read as one of what the server calls the column's type, so each value is read as in a plain insert. (With all arrays
// in one unnest the server would first write the rows down: a sixth slower.)
#pragma once

#include <memory>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// `otherwise` serves where a column's type has no array and where the connection's texts are not UTF-8.
std::unique_ptr<DriverRows> RowsByUnnest(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise);

// Adds a value to the text of an array, behind a ",".
void AppendToArray(const Variant& value, std::string& array);

}  // namespace qmx
