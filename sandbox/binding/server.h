// A component server: the ProgIDs that it serves and how it creates an object of each. The server's one exported
// function passes them to Serve.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "binding/object.h"

namespace orvan {

struct ServedClass {
  std::string progId;
  std::function<Object*()> make;
};

template <class T>
ServedClass Serving() {
  return {T::kName, [] { return new T(); }};
}

// Called once, from the entry function. Refuses a host with another version of the interface.
const qmx_component_server* Serve(const qmx_component_host* host, qmx_error* error, const char* description,
                                  std::vector<ServedClass> classes) noexcept;

}  // namespace orvan
