// The types of a VARIANT.
#pragma once

#include <oaidl.h>
#include <oleauto.h>

#include <string>

namespace qmx {

// "VT_ARRAY|VT_I4", "VT_BYREF|VT_BSTR"; an unknown type is its number.
std::string TypeName(VARTYPE type);

// Returns how many bytes a reference of the type refers to; 0 for types other than numbers, date-times, texts, objects
// and error values.
std::size_t SizeOf(VARTYPE type);

}  // namespace qmx
