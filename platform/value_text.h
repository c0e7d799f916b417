// A value as the details of an error show it: null, 'text', or anything else as it is.
#pragma once

#include <string>

#include "platform/variant.h"

namespace qmx {

inline std::string ValueText(const Variant& value) {
  if (value.IsNull()) return "null";
  return value.IfText() ? "'" + *value.IfText() + "'" : value.ToText();
}

}  // namespace qmx
