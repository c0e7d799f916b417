// An object of a COM component, as the program calls it.
//
// A member is looked up once for all objects of a type (com_type.h), and invoked as a method or a property. An error
// that the component describes keeps its number, source and description. Another failure gets its classic number, or
// else its result as the number, the detail "hresult", and the detail "component's text" if the component left one with
// the thread (error_text.h). All errors have the details "member", "progid" (if the object was created from one) and
// "type" (if the component names its types).
//
// Arguments are passed as com_arguments.h says. A component that refuses their types is called again with references
// of the variables' own types.
//
// A request to end (platform/interruption.h) is raised by the next call to an object of the ERP other than Close.
#pragma once

#include <oaidl.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/com/apartment.h"
#include "platform/com/com_arguments.h"
#include "platform/com/com_ptr.h"
#include "platform/components.h"

namespace qmx {

class ComType;

class ComObject final : public Dispatch {
 public:
  // `progId` is empty for an object that a call returned. The destructor removes the object from KnownObjects.
  ComObject(ComPtr<IDispatch> dispatch, std::string_view progId);
  ~ComObject() override;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  Variant Invoke(const Member& member, std::span<const Argument> arguments) override;
  void Describe(Error& error, const Member& member) const override;

  IDispatch* Interface() const { return dispatch_.Get(); }

 private:
  struct Failure;

  // Not inlined: only the first call of a getter comes here.
  [[gnu::noinline]] Variant InvokeOther(const Member& member, std::span<const Argument> arguments);
  Member::Site Find(const Member& member);
  Variant CallWith(std::span<const Argument> arguments, ComArguments::References references, const Member& member,
                   DISPID id);
  HRESULT Call(DISPID id, DISPPARAMS& parameters, VARIANT* result, Failure& failure);
  [[noreturn, gnu::noinline]] void Raise(HRESULT result, const Member& member, std::size_t argumentCount,
                                         Failure& failure) const;
  std::string Name() const;

  std::shared_ptr<ComApartment> apartment_;  // the first member, because it is released last
  ComPtr<IDispatch> dispatch_;
  ComType* type_ = nullptr;  // null before the first call
  const char* progId_;       // null for an object that a call returned
  const char* fromProgId_;   // its own, else that of the object that returned it; may be null
};

}  // namespace qmx
