// The identifiers of the sandbox's COM classes, made of their ProgIDs: the same on every machine.
#pragma once

#include <objbase.h>

#include <string>
#include <string_view>

namespace orvan {

// A UUID of version 5 in the sandbox's own namespace. ProgIDs that differ in the case of ASCII letters only have one.
GUID GuidOf(std::string_view name);

std::wstring TextOf(const GUID& guid);  // "{...}"

}  // namespace orvan
