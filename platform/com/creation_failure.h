// Says why COM creates no object of a name, and what to do. The sentences follow "COM: " in the list of places that
// were searched.
#pragma once

#include <objbase.h>

#include <string>
#include <string_view>

namespace qmx {

// No class is registered under the name, nor under its prefix (empty for none).
std::string WhyNoClass(std::string_view name, std::string_view prefix, HRESULT result);

// The class gives no object. The result is a success if it says that it gave one.
std::string WhyNoObject(const CLSID& id, HRESULT result);

// The same for a moniker.
std::string WhyNoObject(HRESULT result);

}  // namespace qmx
