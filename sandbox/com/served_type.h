// The type information of a server's objects: a GUID, a name, and the members' ids, which the server looks up.
#pragma once

#include <oaidl.h>

#include "qmx/component_server.h"

namespace orvan {

// The ids of COM are those of the server plus one, because 0 is an object's default member.
inline constexpr DISPID kFirstMember = 1;

// Looks up a member. Returns DISP_E_UNKNOWNNAME if the object has none of that name.
HRESULT FindMember(qmx_object& object, const wchar_t* name, DISPID& id);

// Returns new type information of the object, with a reference for the caller.
ITypeInfo* MakeTypeInformation(qmx_object& object);

}  // namespace orvan
