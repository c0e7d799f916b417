#include "platform/com/com_object.h"

#include "platform/com/com_arguments.h"
#include "platform/com/com_error.h"
#include "platform/com/com_type.h"
#include "platform/com/known_objects.h"
#include "platform/com/variant_values.h"
#include "platform/described_call.h"
#include "platform/interruptible_call.h"
#include "platform/interruption.h"
#include "platform/running_call.h"

namespace qmx {

ComObject::ComObject(ComPtr<IDispatch> dispatch, const IUnknown* identity, std::string_view progId)
    : apartment_(ComApartment::Enter()),
      dispatch_(std::move(dispatch)),
      identity_(identity),
      progId_(progId.empty() ? nullptr : RunningCall::KeepText(progId)),
      fromProgId_(progId_ ? progId_ : RunningCall::ProgId()) {}

ComObject::~ComObject() {
  if (identity_) KnownObjects::Remove(identity_);
  const OuterCallRestored outerCall;  // objects are also released while arguments are written back
  const RunningCall running(fromProgId_, "release");
  dispatch_ = {};
}

inline void ComObject::Call(DISPID id, const Member& member, DISPPARAMS& parameters, VARIANT* result) {
  Exception exception;
  UINT wrongArgument = parameters.cArgs;  // none
  const HRESULT answer = dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                           &parameters, result, exception.Receiver(), &wrongArgument);
  if (FAILED(answer)) [[unlikely]]
    Raise(answer, member, parameters.cArgs, wrongArgument, exception);
}

Variant ComObject::Invoke(const Member& member, std::span<const Argument> arguments) {
  const Member::Site& site = member.LastFound();
  if (!type_ || site.type != type_ || !arguments.empty() || Interruption::IsRequested())
    return InvokeOther(member, arguments);
  return Described(*this, member, [&] {
    const RunningCall running(fromProgId_, site.name);
    DISPPARAMS none{};
    OwnedVariant result;
    Call(site.id, member, none, result.Get());
    return FromVariant(result.Value());
  });
}

Variant ComObject::InvokeOther(const Member& member, std::span<const Argument> arguments) {
  return Described(*this, member, [&] {
    if (MayBeInterrupted(fromProgId_, member.Name())) Interruption::RaiseIfRequested();
    const Member::Site found = Find(member);
    ComArguments list(arguments);
    const RunningCall running(fromProgId_, found.name);
    OwnedVariant result;
    Call(found.id, member, list.Parameters(), result.Get());
    return list.Take(result.Value());
  });
}

Member::Site ComObject::Find(const Member& member) {
  Member::Site& site = member.LastFound();
  if (type_ && site.type == type_) return site;
  const char* const name = RunningCall::KeepText(member.Name());
  const RunningCall running(fromProgId_, name);
  if (!type_) type_ = &ComType::Of(*dispatch_);
  if (site.type == type_) return site;
  const ComType::Found found = type_->Find(*dispatch_, member.Name());
  if (FAILED(found.result)) throw ErrorOf({found.result, std::string(member.Name()), 0, {}}, Name());
  const Member::Site here = {type_, found.id, name};
  if (found.isRemembered) site = here;
  return here;
}

void ComObject::Raise(HRESULT result, const Member& member, std::size_t argumentCount, UINT wrongArgument,
                      Exception& exception) const {
  if (result == DISP_E_EXCEPTION) throw exception.ToError(Name());
  FailedCall call{result, std::string(member.Name()), argumentCount, {}};
  // Arguments are passed last first.
  if (wrongArgument < argumentCount) call.argument = argumentCount - wrongArgument;
  throw ErrorOf(call, Name());
}

std::string ComObject::Name() const {
  if (progId_) return progId_;
  return type_ && !type_->Name().empty() ? type_->Name() : "COM";
}

void ComObject::Describe(Error& error, const Member& member) const {
  error.With("member", std::string(member.Name()));
  if (progId_) error.With("progid", progId_);
  if (type_ && !type_->Name().empty()) error.With("type", type_->Name());
}

}  // namespace qmx
