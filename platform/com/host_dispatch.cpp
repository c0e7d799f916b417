#include "platform/com/host_dispatch.h"

#include <unordered_map>

#include "platform/com/bstr.h"
#include "platform/com/com_error.h"
#include "platform/com/component_call.h"
#include "platform/com/variant_values.h"
#include "platform/member_names.h"
#include "platform/running_call.h"

namespace qmx {
namespace {

// Ids begin at 1, because 0 is an object's default member, which these objects do not have.
constexpr DISPID kFirstId = 1;

using Living = std::unordered_map<const void*, HostDispatch*>;

Living& ByTarget() {
  static auto& living = *new Living;  // never destroyed, because components may release objects late
  return living;
}

Living& ByIdentity() {
  static auto& living = *new Living;
  return living;
}

}  // namespace

ComPtr<IDispatch> HostDispatch::For(const std::shared_ptr<Dispatch>& target) {
  const auto living = ByTarget().find(target.get());
  if (living != ByTarget().end()) return ComPtr<IDispatch>::Sharing(living->second);
  auto made = ComPtr<IDispatch>::Owning(new HostDispatch(target));
  return made;
}

HostDispatch::HostDispatch(std::shared_ptr<Dispatch> target) : target_(std::move(target)) {
  ByTarget()[target_.get()] = this;
  ByIdentity()[static_cast<IUnknown*>(this)] = this;
}

HostDispatch::~HostDispatch() {
  ByTarget().erase(target_.get());
  ByIdentity().erase(static_cast<IUnknown*>(this));
}

std::shared_ptr<Dispatch> HostDispatch::TargetOf(const IUnknown* identity) {
  const auto living = ByIdentity().find(identity);
  return living == ByIdentity().end() ? nullptr : living->second->target_;
}

HRESULT HostDispatch::QueryInterface(REFIID id, void** object) noexcept {
  if (!object) return E_POINTER;
  const bool isKnown = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
  *object = isKnown ? static_cast<IDispatch*>(this) : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG HostDispatch::AddRef() noexcept { return ++references_; }

ULONG HostDispatch::Release() noexcept {
  const OuterCallRestored outerCall;
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT HostDispatch::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT HostDispatch::GetTypeInfo(UINT, LCID, ITypeInfo** information) noexcept {
  if (information) *information = nullptr;
  return E_NOTIMPL;
}

HRESULT HostDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  try {
    ids[0] = kFirstId + MemberNames::OfTheProgram().Id(Utf8WithReplacements(names[0]));
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  for (UINT i = 1; i < count; ++i) ids[i] = DISPID_UNKNOWN;  // names of parameters
  return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT HostDispatch::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                             EXCEPINFO* exception, UINT*) noexcept {
  if (!parameters) return E_INVALIDARG;
  if (parameters->cNamedArgs > 0) return DISP_E_NONAMEDARGS;
  const Member* const member = id < kFirstId ? nullptr : MemberNames::OfTheProgram().Find(id - kFirstId);
  if (!member || (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return DISP_E_MEMBERNOTFOUND;
  const OuterCallRestored outerCall;
  try {
    ComponentCall call(*parameters);
    const std::shared_ptr<Dispatch> target = target_;  // the callee may release this
    const Variant given = target->Invoke(*member, call.Arguments());
    OwnedVariant converted;
    ToVariant(given, *converted.Get());
    call.WriteBack();
    if (result) *result = converted.Detach();
    return S_OK;
  } catch (...) {
    return FailWithCurrentError(exception);
  }
}

}  // namespace qmx
