// The kind of a column's values by its declared type.
#pragma once

#include <string_view>

#include "platform/variant.h"

namespace qmx {

// Empty if the type is unknown or missing: such values keep the kind that they have.
Variant::Kind KindOfDeclaredType(std::string_view declaredType);

}  // namespace qmx
