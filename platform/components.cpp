#include "platform/components.h"

#include "platform/error.h"

namespace qmx {

Variant Invoke(const Object& object, const Member& member, std::span<const Argument> arguments) {
  if (!object) {
    throw Error(errors::kObjectNotSet, "Components", "Object variable not set: there is no object to call.")
        .With("member", std::string(member.Name()));
  }
  return object.Target()->Invoke(member, arguments);
}

}  // namespace qmx
