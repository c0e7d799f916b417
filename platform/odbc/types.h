// The kind of a column's values by its SQL type, and values as a driver returns them.
#pragma once

#include <sql.h>

#include <string>
#include <string_view>

#include "platform/variant.h"

namespace qmx {

// `typeName` is the database's own name of the type: one driver returns booleans as texts, and only the name
// shows it.
Variant::Kind KindOfSqlType(SQLLEN sqlType, std::string_view typeName, bool isUnsigned);

// Converts a driver's text to the column's type if it has that form, else returns it unchanged.
Variant FromDriverText(std::string text, Variant::Kind kind);

}  // namespace qmx
