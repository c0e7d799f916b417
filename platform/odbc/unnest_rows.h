// Adds rows as one array for each column: "insert into T (A,B) select unnest(?::text[]),unnest(?::integer[])". Each
// array has the server's type of its column, so the server reads each value as in a plain insert. (One unnest of all
// arrays is a sixth slower, because the server stores the rows first.)
#pragma once

#include <memory>

#include "platform/database_driver.h"

namespace qmx {

class OdbcConnection;

// Uses `otherwise` if a column's type has no array type or the connection's texts are not UTF-8.
std::unique_ptr<DriverRows> RowsByUnnest(OdbcConnection& connection, const RowInsert& insert,
                                         std::unique_ptr<DriverRows> otherwise);

// Appends a value and a "," to the text of an array.
void AppendToArray(const Variant& value, std::string& array);

}  // namespace qmx
