// What an SQL type means for a column's values, and values as they come from a driver.
#pragma once

#include <sql.h>

#include <string>
#include <string_view>

#include "platform/variant.h"

namespace qmx {

// `typeName` is the database's own name of the type: one driver gives booleans as texts and tells them by name only.
Variant::Kind KindOfSqlType(SQLLEN sqlType, std::string_view typeName, bool isUnsigned);

// A text that a driver gave, in the column's type where it has that form, else as it is.
Variant FromDriverText(std::string text, Variant::Kind kind);

}  // namespace qmx
