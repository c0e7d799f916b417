// Passes objects between the program and COM, and keeps their identities: an object that comes back is the same Object,
// and one that is passed again is the same interface.
#pragma once

#include <oaidl.h>

#include <string_view>

#include "platform/com/com_ptr.h"
#include "platform/object.h"

namespace qmx {

// Returns no object for null. An object of the program becomes itself again. An interface of a component that comes
// back is the same Object; another interface of one object is another Object, because it may have other members.
// `progId` is what it was created from, and gives an Object of its own, because a component may give one object for
// several ProgIDs. It is empty for an object that a call returned.
Object ObjectFrom(IDispatch* dispatch, std::string_view progId = {});

// Returns null for no object. An object of a component is passed as the interface that it was, any other as a
// HostDispatch.
ComPtr<IDispatch> DispatchOf(const Object& object);

}  // namespace qmx
