// An object of a component server, as the program calls it.
//
// A member is looked up in the server once per call site and type. An error of the server keeps its number, source and
// description, and gets the details "member", "progid" (if the object was created from one) and "type" (if the server
// names its types).
//
// A request to end (platform/interruption.h) is raised by the next call to an object of the ERP other than Close.
#pragma once

#include "platform/components/abi_values.h"

namespace qmx {

class ServerObject final : public Dispatch {
 public:
  // Takes over a reference. Raises 51 for an object that is too short or lacks one of its four functions.
  explicit ServerObject(qmx_object* object);
  ServerObject(qmx_object* object, std::string_view progId);
  ~ServerObject() override;
  ServerObject(const ServerObject&) = delete;
  ServerObject& operator=(const ServerObject&) = delete;

  Variant Invoke(const Member& member, std::span<const Argument> arguments) override;
  void Describe(Error& error, const Member& member) const override;

  qmx_object* Pointer() const { return object_; }

 private:
  // Not inlined: only the first call of a getter comes here.
  [[gnu::noinline]] Variant InvokeOther(const Member& member, std::span<const Argument> arguments);
  Member::Site Find(const Member& member);
  void Call(std::int32_t id, qmx_value* const* arguments, std::size_t count, qmx_value& result);
  [[noreturn]] void Raise(qmx_status status, const qmx_error& error) const;
  std::string Name() const;

  qmx_object* object_;
  const char* progId_;      // null for an object that a call returned
  const char* fromProgId_;  // its own, else that of the object that returned it; may be null
};

}  // namespace qmx
