// A component whose every answer a test decides, and which counts what it is asked for.
#pragma once

#include <oaidl.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/com/com_ptr.h"

namespace qmx::test {

// Type information that has a GUID, a name and the members' ids, and nothing else. The ids count from 1.
class StubTypeInfo final : public ITypeInfo {
 public:
  StubTypeInfo(GUID guid, std::wstring name, std::vector<std::wstring> members)
      : guid_(guid), name_(std::move(name)), members_(std::move(members)) {}
  virtual ~StubTypeInfo() = default;

  bool hasAttributes = true;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** attributes) override;
  void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attributes) override { delete attributes; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT, MEMBERID* ids) override;
  HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID, BSTR* name, BSTR*, DWORD*, BSTR*) override;

  HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT, FUNCDESC**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetVarDesc(UINT, VARDESC**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetNames(MEMBERID, BSTR*, UINT, UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT, HREFTYPE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT, INT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, PVOID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
  void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC*) override {}
  void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC*) override {}

 private:
  ULONG references_ = 1;
  GUID guid_;
  std::wstring name_;
  std::vector<std::wstring> members_;
};

// Returns an object that has no IDispatch.
ComPtr<IUnknown> ObjectWithoutDispatch();

// Returns an object whose QueryInterface succeeds without giving an interface.
ComPtr<IUnknown> ObjectThatGivesNothing();

class StubComponent final : public IDispatch {
 public:
  struct Call {
    DISPID id;
    WORD flags;
    DISPPARAMS& parameters;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* wrongArgument;
  };
  using Answer = std::function<HRESULT(Call call)>;

  // Answers to every member of `names`, whose ids count from `firstId`.
  static ComPtr<StubComponent> Make(Answer answer, std::vector<std::wstring> names = {L"ask"}, DISPID firstId = 1);
  // Answers with a value, which is copied.
  static ComPtr<StubComponent> Giving(const VARIANT& value);

  std::vector<std::wstring> names;
  DISPID firstId = 1;
  ComPtr<ITypeInfo> information;
  std::function<void()> whenLookedUp = [] {};
  std::function<void()> whenReleased = [] {};  // for the last time
  bool hasIdentity = true;                     // no IUnknown otherwise, against COM's rules
  IUnknown* outer = nullptr;                   // whose further interface this is, borrowed
  int lookUps = 0;
  int invocations = 0;
  ULONG references = 1;
  static inline int living = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** given) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* wanted, UINT, LCID, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* exception, UINT* wrongArgument) override;

 private:
  explicit StubComponent(Answer answer) : answer_(std::move(answer)) { ++living; }
  virtual ~StubComponent() {
    whenReleased();
    --living;
  }

  Answer answer_;
};

}  // namespace qmx::test
