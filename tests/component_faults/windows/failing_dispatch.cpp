#include "tests/component_faults/windows/failing_dispatch.h"

#include <objbase.h>

#include <algorithm>
#include <span>

#include "com/served_type.h"
#include "platform/com/bstr.h"
#include "platform/components.h"
#include "platform/member_names.h"

namespace qmx::test {
namespace {

std::string TypeNameOf(IDispatch& object) {
  ComPtr<ITypeInfo> information;
  object.GetTypeInfo(0, LOCALE_USER_DEFAULT, information.Receiver());
  OwnedBstr name;
  information->GetDocumentation(MEMBERID_NIL, name.Receiver(), nullptr, nullptr, nullptr);
  return Utf8(name.View());
}

bool HasReferenceToVariant(const DISPPARAMS& parameters) {
  const std::span<const VARIANT> arguments(parameters.rgvarg, parameters.cArgs);
  return std::any_of(arguments.begin(), arguments.end(),
                     [](const VARIANT& argument) { return argument.vt == (VT_BYREF | VT_VARIANT); });
}

}  // namespace

void FailingCalls::DisconnectAll() const {
  for (IUnknown* const object : living) CoDisconnectObject(object, 0);
}

ComPtr<IDispatch> FailingDispatch::Around(ComPtr<IDispatch> inner, FailingCalls& calls) {
  if (!inner) return {};
  return ComPtr<IDispatch>::Owning(new FailingDispatch(std::move(inner), calls));
}

FailingDispatch::FailingDispatch(ComPtr<IDispatch> inner, FailingCalls& calls)
    : inner_(std::move(inner)), calls_(calls), kind_(TypeNameOf(*inner_)) {
  calls_.living.insert(this);
  static DISPID lastId = 0;
  if (calls_.haveOwnIds) firstId_ = lastId += 1000;
}

// The inner object's own interfaces are given, so that its server knows it when it comes back.
HRESULT FailingDispatch::QueryInterface(REFIID id, void** object) {
  const bool isOwn = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
  if (!isOwn) return inner_->QueryInterface(id, object);
  *object = this;
  AddRef();
  return S_OK;
}

ULONG FailingDispatch::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT FailingDispatch::GetTypeInfo(UINT index, LCID locale, ITypeInfo** information) {
  return calls_.haveOwnIds ? E_NOTIMPL : inner_->GetTypeInfo(index, locale, information);
}

HRESULT FailingDispatch::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) {
  const HRESULT found = inner_->GetIDsOfNames(id, names, count, locale, ids);
  if (SUCCEEDED(found)) ids[0] += firstId_;
  return found;
}

HRESULT FailingDispatch::Invoke(DISPID id, REFIID interfaceId, LCID locale, WORD flags, DISPPARAMS* parameters,
                                VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) {
  const DISPID innerId = id - firstId_;
  if (calls_.haveTypes && HasReferenceToVariant(*parameters)) return DISP_E_TYPEMISMATCH;
  const Member& member = *MemberNames::OfTheProgram().Find(innerId - orvan::kFirstMember);
  const bool isErps = kind_ != "messages" && kind_ != "requests";
  const bool failedBefore = isErps && calls_.failure && calls_.failure->isForGood && calls_.calls.HasStruck();
  const bool isStruck = calls_.calls.IsStruck(kind_ + '.' + std::string(member.Name()));
  if (isStruck || failedBefore) return calls_.failure->invoke(*parameters, *result, *exception, *wrongArgument);
  const HRESULT answer =
      inner_->Invoke(innerId, interfaceId, locale, flags, parameters, result, exception, wrongArgument);
  if (SUCCEEDED(answer) && result->vt == VT_DISPATCH)
    result->pdispVal = Around(ComPtr<IDispatch>::Owning(result->pdispVal), calls_).Detach();
  return answer;
}

}  // namespace qmx::test
