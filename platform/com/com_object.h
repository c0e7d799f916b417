// An object of a COM component, as the program calls it.
//
// A member is looked up once for all objects of a type (com_type.h), and invoked as a method or a property. An error
// that the component describes keeps its number, source and description. Another failure gets its classic number, or
// else its result as the number, and the detail "hresult". All errors have the details "member", "progid" (if the
// object was created from one) and "type" (if the component names its types).
//
// A request to end (platform/interruption.h) is raised by the next call to an object of the ERP other than Close.
#pragma once

#include <oaidl.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/com/apartment.h"
#include "platform/com/com_ptr.h"
#include "platform/components.h"

namespace qmx {

class ComType;
class Exception;

class ComObject final : public Dispatch {
 public:
  // `identity` is the key in KnownObjects, which the destructor removes; null if there is none. `progId` is empty for
  // an object that a call returned.
  ComObject(ComPtr<IDispatch> dispatch, const IUnknown* identity, std::string_view progId);
  ~ComObject() override;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  Variant Invoke(const Member& member, std::span<const Argument> arguments) override;
  void Describe(Error& error, const Member& member) const override;

  IDispatch* Interface() const { return dispatch_.Get(); }

 private:
  // Not inlined: only the first call of a getter comes here.
  [[gnu::noinline]] Variant InvokeOther(const Member& member, std::span<const Argument> arguments);
  Member::Site Find(const Member& member);
  void Call(DISPID id, const Member& member, DISPPARAMS& parameters, VARIANT* result);
  [[noreturn, gnu::noinline]] void Raise(HRESULT result, const Member& member, std::size_t argumentCount,
                                         UINT wrongArgument, Exception& exception) const;
  std::string Name() const;

  std::shared_ptr<ComApartment> apartment_;  // the first member, because it is released last
  ComPtr<IDispatch> dispatch_;
  const IUnknown* identity_;
  ComType* type_ = nullptr;  // null before the first call
  const char* progId_;       // null for an object that a call returned
  const char* fromProgId_;   // its own, else that of the object that returned it; may be null
};

}  // namespace qmx
