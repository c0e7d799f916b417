// A reference to a late-bound component object, or to none.
//
// Objects are counted: copies refer to the same object, the last one releases it. "No object" is a value that can be
// tested; calling it is error 91. Calls are defined in components.h.
#pragma once

#include <memory>

namespace qmx {

class Dispatch;
class Member;
class Variant;

class Object {
 public:
  Object() = default;
  explicit Object(std::shared_ptr<Dispatch> target) : target_(std::move(target)) {}

  explicit operator bool() const { return target_ != nullptr; }
  const std::shared_ptr<Dispatch>& Target() const { return target_; }

  // Calls a member with any number of arguments, each a value or a Ref to a variable that the callee may write.
  template <typename... Arguments>
  Variant Call(const Member& member, Arguments&&... arguments) const;

  friend bool operator==(const Object&, const Object&) = default;  // the same object

 private:
  std::shared_ptr<Dispatch> target_;
};

}  // namespace qmx
