// A value as errors show it: null, 'text', or the plain text of any other value.
#pragma once

#include <string>

#include "platform/variant.h"

namespace qmx {

inline std::string ValueText(const Variant& value) {
  if (value.IsNull()) return "null";
  return value.IfText() ? "'" + *value.IfText() + "'" : value.ToText();
}

}  // namespace qmx
