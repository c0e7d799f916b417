#include "platform/com/com_object.h"

#include "platform/com/com_arguments.h"
#include "platform/com/com_error.h"
#include "platform/com/com_type.h"
#include "platform/com/error_text.h"
#include "platform/com/floating_point.h"
#include "platform/com/known_objects.h"
#include "platform/com/variant_values.h"
#include "platform/described_call.h"
#include "platform/interruptible_call.h"
#include "platform/interruption.h"
#include "platform/running_call.h"

namespace qmx {

// What a component says of a failure beside its result.
struct ComObject::Failure {
  Exception exception;
  UINT wrongArgument = 0;
};

ComObject::ComObject(ComPtr<IDispatch> dispatch, std::string_view progId)
    : apartment_(ComApartment::Enter()),
      dispatch_(std::move(dispatch)),
      progId_(progId.empty() ? nullptr : RunningCall::KeepText(progId)),
      fromProgId_(progId_ ? progId_ : RunningCall::ProgId()) {}

ComObject::~ComObject() {
  KnownObjects::Remove(dispatch_.Get());
  const OuterCallRestored outerCall;  // objects are also released while arguments are written back
  const RunningCall running(fromProgId_, "release");
  dispatch_ = {};
}

inline HRESULT ComObject::Call(DISPID id, DISPPARAMS& parameters, VARIANT* result, Failure& failure) {
  const FloatingPointKept kept;
  failure.wrongArgument = parameters.cArgs;  // none
  ForgetErrorText();
  return dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters,
                           result, failure.exception.Receiver(), &failure.wrongArgument);
}

Variant ComObject::Invoke(const Member& member, std::span<const Argument> arguments) {
  const Member::Site& site = member.LastFound();
  if (!type_ || site.type != type_ || !arguments.empty() || Interruption::IsRequested())
    return InvokeOther(member, arguments);
  return Described(*this, member, [&] {
    const RunningCall running(fromProgId_, site.name);
    DISPPARAMS none{};
    OwnedVariant result;
    Failure failure;
    const HRESULT answer = Call(site.id, none, result.Get(), failure);
    if (FAILED(answer)) [[unlikely]]
      Raise(answer, member, 0, failure);
    return FromVariant(result.Value());
  });
}

Variant ComObject::InvokeOther(const Member& member, std::span<const Argument> arguments) {
  return Described(*this, member, [&] {
    if (MayBeInterrupted(fromProgId_, member.Name())) Interruption::RaiseIfRequested();
    const Member::Site found = Find(member);
    const RunningCall running(fromProgId_, found.name);
    return CallWith(arguments, ComArguments::References::AnyType, member, found.id);
  });
}

Variant ComObject::CallWith(std::span<const Argument> arguments, ComArguments::References references,
                            const Member& member, DISPID id) {
  ComArguments list(arguments, references);
  OwnedVariant result;
  Failure failure;
  const HRESULT answer = Call(id, list.Parameters(), result.Get(), failure);
  if (SUCCEEDED(answer)) return list.Take(result.Value());
  // Arguments are refused before the member runs, so it can be called again.
  if (answer == DISP_E_TYPEMISMATCH && list.HaveOtherTypes())
    return CallWith(arguments, ComArguments::References::OwnTypes, member, id);
  Raise(answer, member, arguments.size(), failure);
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

void ComObject::Raise(HRESULT result, const Member& member, std::size_t argumentCount, Failure& failure) const {
  if (result == DISP_E_EXCEPTION) throw failure.exception.ToError(Name());
  FailedCall call{result, std::string(member.Name()), argumentCount, {}};
  // Arguments are passed last first.
  if (failure.wrongArgument < argumentCount) call.argument = argumentCount - failure.wrongArgument;
  Error error = ErrorOf(call, Name());
  const std::string text = TakeErrorText();
  if (!text.empty()) error.With("component's text", text);
  throw error;
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
