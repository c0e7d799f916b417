// Passes objects between COM and the servers. An object that comes back to the side that made it is that side's own.
#pragma once

#include <oaidl.h>

#include "qmx/component_server.h"

namespace orvan {

// Returns the object for a server, with a reference for the caller; null for null.
qmx_object* ToServer(IDispatch* object);

// Returns the interface for a client, with a reference for the caller, and takes over that to the server's object. Null
// for null.
IDispatch* FromServer(qmx_object* object);

}  // namespace orvan
