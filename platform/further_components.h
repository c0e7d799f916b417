// A place besides the manifests where components are registered, such as the operating system's registry.
#pragma once

#include <string>
#include <string_view>

#include "platform/object.h"

namespace qmx {

class FurtherComponents {
 public:
  virtual ~FurtherComponents() = default;

  virtual std::string Name() const = 0;

  struct Answer {
    Object object;
    bool isRegistered = false;  // whether the place knows the ProgID, even if it cannot create an object now
    std::string refusal;        // begins with the place's name: why there is no object
  };
  virtual Answer Create(std::string_view progId) = 0;

  struct Registration {
    bool isRegistered = false;
    std::string problem;  // why its server cannot be used, or it is not registered; begins like `refusal`
  };
  // Loads the ProgID's server, but creates no object.
  virtual Registration Find(std::string_view progId) = 0;
};

}  // namespace qmx
