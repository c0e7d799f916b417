// An object of the program, as component servers call it over the C interface.
//
// Any Dispatch can be given to a server. All of them are of one type, whose member ids are those of the names that
// servers asked for; whether an object has such a member shows when it is called.
#pragma once

#include "platform/components/abi_values.h"

namespace qmx {

// A new reference to the object for a server.
qmx_object* ExportHostObject(std::shared_ptr<Dispatch> target);

// The Dispatch behind an object that was exported; null for an object of a server.
std::shared_ptr<Dispatch> HostObjectTarget(const qmx_object* object);

}  // namespace qmx
