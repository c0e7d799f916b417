#include "platform/components.h"

#include "platform/error.h"

namespace qmx {

void Dispatch::Describe(Error& error, const Member& member) const { error.With("member", std::string(member.Name())); }

Object ObjectGivenBy(const Object& callee, const Member& member, Variant result) {
  try {
    return std::move(result).ToObject();
  } catch (Error& error) {
    callee.Target()->Describe(error, member);
    throw;
  }
}

bool BooleanGivenBy(const Object& callee, const Member& member, const Variant& result) {
  try {
    return result.ToBoolean();
  } catch (Error& error) {
    callee.Target()->Describe(error, member);
    throw;
  }
}

void RaiseObjectNotSet(const Member& member) {
  throw Error(errors::kObjectNotSet, "Components", "Object variable not set: there is no object to call.")
      .With("member", std::string(member.Name()));
}

}  // namespace qmx
