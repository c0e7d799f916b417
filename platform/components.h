// Late-bound components: made by programmatic identifier, called by member name.
//
// ProgIDs and member names are compared without regard to case. An argument may be a reference, which the callee may
// write back. Above the adapters there is one thread.
//
// Errors: a ProgID that no component serves is 429, an unknown member 438, a wrong number of arguments 450, a call on
// no object 91; an error that a component raises keeps its number, source and description. Each carries the detail
// "member" or "progid".
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/object.h"
#include "platform/variant.h"

namespace qmx {

class Error;

// A member's name, which remembers where it was last found. As a constant at the call site it is looked up once and not
// once per call. The text is borrowed: a literal, or one that outlives the call.
class Member {
 public:
  Member(const char* name) : name_(name) {}
  Member(std::string_view name) : name_(name) {}

  std::string_view Name() const { return name_; }

  // For adapters: the type of object on which the member was last found, its id there, and its name as RunningCall
  // keeps it. An adapter that fills this in keeps its types at their addresses until the process ends.
  struct Site {
    const void* type = nullptr;
    std::int32_t id = 0;
    const char* name = nullptr;
  };
  Site& LastFound() const { return lastFound_; }

 private:
  std::string_view name_;
  mutable Site lastFound_;
};

// One argument of a call: a value, or a reference to the caller's variable.
class Argument {
 public:
  Argument(Variant value) : value_(std::move(value)) {}
  static Argument Reference(Variant& variable) { return Argument(&variable); }

  const Variant& Value() const { return reference_ ? *reference_ : value_; }
  bool IsReference() const { return reference_ != nullptr; }
  void Write(Variant value) const { *reference_ = std::move(value); }  // references only

 private:
  explicit Argument(Variant* reference) : reference_(reference) {}
  Variant value_;
  Variant* reference_ = nullptr;
};

inline Argument Ref(Variant& variable) { return Argument::Reference(variable); }

// The implementation of an Object. Each adapter, decorator and fake has its own.
class Dispatch {
 public:
  virtual ~Dispatch() = default;

  // Adds the details of a call of the member: its name and, if the adapter knows them, the object's ProgID and type.
  virtual void Describe(Error& error, const Member& member) const;

  virtual Variant Invoke(const Member& member, std::span<const Argument> arguments) = 0;
};

// Creates components.
class Components {
 public:
  virtual ~Components() = default;
  virtual Object CreateObject(std::string_view progId) = 0;
};

[[noreturn]] void RaiseObjectNotSet(const Member& member);

// Returns a call's result as an object. Another kind of value is error 13, which names the call.
Object ObjectGivenBy(const Object& callee, const Member& member, Variant result);

// Returns a call's result as a boolean. The error for a value that is none names the call.
bool BooleanGivenBy(const Object& callee, const Member& member, const Variant& result);

// Makes the call of Object::Call. Raises 91 on no object.
inline Variant Invoke(const Object& object, const Member& member, std::span<const Argument> arguments) {
  if (!object) [[unlikely]]
    RaiseObjectNotSet(member);
  return object.Target()->Invoke(member, arguments);
}

template <typename... Arguments>
Variant Object::Call(const Member& member, Arguments&&... arguments) const {
  if constexpr (sizeof...(Arguments) == 0) {
    return Invoke(*this, member, {});
  } else {
    const Argument list[] = {Argument(std::forward<Arguments>(arguments))...};
    return Invoke(*this, member, list);
  }
}

}  // namespace qmx
