// An object of a component server, as the program calls it.
//
// A member is looked up in the server once per call site and type. What the server raises keeps its number, source and
// description, with the details "member", "progid" (where the object was made from one) and "type" (where the server
// names its types).
//
// A request to end (platform/interruption.h) is raised by the next call to an object of the ERP other than Close.
#pragma once

#include "platform/components/abi_values.h"

namespace qmx {

class ServerObject final : public Dispatch {
 public:
  // Takes over a reference. Raises 51 for an object that cannot be called: too short, without its four functions.
  explicit ServerObject(qmx_object* object);
  ServerObject(qmx_object* object, std::string_view progId);
  ~ServerObject() override;
  ServerObject(const ServerObject&) = delete;
  ServerObject& operator=(const ServerObject&) = delete;

  Variant Invoke(const Member& member, std::span<const Argument> arguments) override;
  void Describe(Error& error, const Member& member) const override;

  qmx_object* Pointer() const { return object_; }

 private:
  // Not inlined: a getter that was called before takes the short way.
  [[gnu::noinline]] Variant InvokeOther(const Member& member, std::span<const Argument> arguments);
  bool MayBeInterrupted(const Member& member) const;
  Member::Site Find(const Member& member);
  void Call(std::int32_t id, qmx_value* const* arguments, std::size_t count, qmx_value& result);
  template <typename Body>
  Variant Described(const Member& member, Body&& body) const;
  [[noreturn]] void Raise(qmx_status status, const qmx_error& error) const;
  std::string Name() const;

  qmx_object* object_;
  const char* progId_;      // null for an object that a call returned
  const char* fromProgId_;  // its own, else that of the call that returned it; null where there is none
};

}  // namespace qmx
