// What a column's declared type means for its values.
#pragma once

#include <string_view>

#include "platform/variant.h"

namespace qmx {

// Empty where the type says nothing, or is none: an expression's values are kept as they come.
Variant::Kind KindOfDeclaredType(std::string_view declaredType);

}  // namespace qmx
