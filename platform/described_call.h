// A call of a component's member. Whatever it raises becomes an error that the called object describes.
#pragma once

#include "platform/components.h"
#include "platform/error.h"

namespace qmx {

template <typename Called, typename Body>
inline Variant Described(const Called& object, const Member& member, Body&& body) {
  try {
    return body();
  } catch (Error& error) {
    object.Describe(error, member);
    throw;
  } catch (...) {
    Error error = CurrentError();  // an exception of the component, or no memory
    object.Describe(error, member);
    throw error;
  }
}

}  // namespace qmx
