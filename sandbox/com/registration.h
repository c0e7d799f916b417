// Enters the served classes into the registry, for the current user.
#pragma once

#include <windows.h>

namespace orvan {

// If the system does not look at the user's own classes, as Wine 8, they are entered for the machine too.
HRESULT RegisterClasses() noexcept;
HRESULT UnregisterClasses() noexcept;

}  // namespace orvan
