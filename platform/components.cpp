#include "platform/components.h"

#include "platform/error.h"

namespace qmx {

void RaiseObjectNotSet(const Member& member) {
  throw Error(errors::kObjectNotSet, "Components", "Object variable not set: there is no object to call.")
      .With("member", std::string(member.Name()));
}

}  // namespace qmx
