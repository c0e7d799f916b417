// An object of the COM client as a server calls it.
#pragma once

#include <oaidl.h>

#include "qmx/component_server.h"

namespace orvan {

// Returns a new object with a reference for the caller. Adds a reference to `object`.
qmx_object* MakeClientsObject(IDispatch* object);

// Returns the interface behind such an object; null for an object of a server.
IDispatch* ClientsObject(const qmx_object& object);

}  // namespace orvan
