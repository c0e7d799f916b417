// Exports objects of the program, which component servers call over the C interface.
//
// A server can get any Dispatch. All exported objects have one type, whose member ids are those of the names that
// servers have resolved. Whether an object has the member shows at the call.
#pragma once

#include "platform/components/abi_values.h"

namespace qmx {

// Returns a new reference to the object for a server.
qmx_object* ExportHostObject(std::shared_ptr<Dispatch> target);

// Returns the Dispatch of an exported object; null for an object of a server.
std::shared_ptr<Dispatch> HostObjectTarget(const qmx_object* object);

}  // namespace qmx
