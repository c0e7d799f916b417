#include "tests/platform/com/stub_component.h"

#include <oaidl.h>
#include <oleauto.h>

namespace qmx::test {
namespace {

// The place of the name in the list, without regard to case; -1 for none.
int Find(const std::vector<std::wstring>& names, const wchar_t* wanted) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (lstrcmpiW(names[i].c_str(), wanted) == 0) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace

HRESULT StubTypeInfo::QueryInterface(REFIID id, void** object) {
  const bool isKnown = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_ITypeInfo);
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG StubTypeInfo::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT StubTypeInfo::GetTypeAttr(TYPEATTR** attributes) {
  *attributes = nullptr;
  if (!hasAttributes) return E_OUTOFMEMORY;
  *attributes = new TYPEATTR{};
  (*attributes)->guid = guid_;
  return S_OK;
}

HRESULT StubTypeInfo::GetIDsOfNames(LPOLESTR* names, UINT, MEMBERID* ids) {
  const int place = Find(members_, names[0]);
  ids[0] = place + 1;
  return place < 0 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT StubTypeInfo::GetDocumentation(MEMBERID, BSTR* name, BSTR*, DWORD*, BSTR*) {
  *name = SysAllocString(name_.c_str());
  return S_OK;
}

ComPtr<IUnknown> ObjectWithoutDispatch() {
  return ComPtr<IUnknown>::Owning(new StubTypeInfo(GUID{}, std::wstring(), {}));
}

ComPtr<IUnknown> ObjectThatGivesNothing() {
  struct Empty final : IUnknown {
    virtual ~Empty() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
      *object = nullptr;
      return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
      const ULONG left = --references;
      if (left == 0) delete this;
      return left;
    }
    ULONG references = 1;
  };
  return ComPtr<IUnknown>::Owning(new Empty);
}

ComPtr<StubComponent> StubComponent::Make(Answer answer, std::vector<std::wstring> names, DISPID firstId) {
  auto made = ComPtr<StubComponent>::Owning(new StubComponent(std::move(answer)));
  made->names = std::move(names);
  made->firstId = firstId;
  return made;
}

ComPtr<StubComponent> StubComponent::Giving(const VARIANT& value) {
  return Make([value](Call call) {
    *call.result = value;
    return S_OK;
  });
}

HRESULT StubComponent::QueryInterface(REFIID id, void** object) {
  if (outer && IsEqualIID(id, IID_IUnknown)) return outer->QueryInterface(id, object);
  const bool isKnown = (IsEqualIID(id, IID_IUnknown) && hasIdentity) || IsEqualIID(id, IID_IDispatch);
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG StubComponent::Release() {
  const ULONG left = --references;
  if (left == 0) delete this;
  return left;
}

HRESULT StubComponent::GetTypeInfoCount(UINT* count) {
  *count = information ? 1 : 0;
  return S_OK;
}

HRESULT StubComponent::GetTypeInfo(UINT, LCID, ITypeInfo** given) {
  *given = ComPtr<ITypeInfo>(information).Detach();
  return *given ? S_OK : E_NOTIMPL;
}

HRESULT StubComponent::GetIDsOfNames(REFIID, LPOLESTR* wanted, UINT, LCID, DISPID* ids) {
  ++lookUps;
  whenLookedUp();
  const int place = Find(names, wanted[0]);
  ids[0] = place < 0 ? DISPID_UNKNOWN : firstId + place;
  return place < 0 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT StubComponent::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                              EXCEPINFO* exception, UINT* wrongArgument) {
  ++invocations;
  return answer_({id, flags, *parameters, result, exception, wrongArgument});
}

}  // namespace qmx::test
