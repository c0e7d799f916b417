#include "com/served_type.h"

#include <atomic>
#include <string>

#include "com/guid.h"
#include "com/values.h"

namespace orvan {
namespace {

std::string NameOf(const qmx_type& type) { return QMX_HAS(&type, name) && type.name ? type.name : ""; }

class ServedType final : public ITypeInfo {
 public:
  explicit ServedType(qmx_object& object) : object_(object) { object.type->add_ref(&object); }
  virtual ~ServedType() { object_.type->release(&object_); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    const bool isKnown = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_ITypeInfo);
    *object = isKnown ? this : nullptr;
    if (!isKnown) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** attributes) noexcept override {
    auto* const made = new (std::nothrow) TYPEATTR{};
    *attributes = made;
    if (!made) return E_OUTOFMEMORY;
    // A type without a name is not told from others.
    if (const std::string name = NameOf(*object_.type); !name.empty()) made->guid = GuidOf("type " + name);
    made->typekind = TKIND_DISPATCH;
    return S_OK;
  }
  void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attributes) noexcept override { delete attributes; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) noexcept override {
    return count == 1 ? FindMember(object_, names[0], ids[0]) : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID member, BSTR* name, BSTR*, DWORD*, BSTR*) noexcept override {
    if (member != MEMBERID_NIL || !name) return E_NOTIMPL;
    const std::string text = NameOf(*object_.type);
    *name = NewBstr(text.data(), text.size());
    return S_OK;
  }

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
  std::atomic<ULONG> references_ = 1;
  qmx_object& object_;
};

}  // namespace

HRESULT FindMember(qmx_object& object, const wchar_t* name, DISPID& id) {
  const std::string member = Utf8(name);
  qmx_error error{};
  error.struct_size = sizeof error;
  std::int32_t found = 0;
  const bool isFound = object.type->resolve(&object, member.data(), member.size(), &found, &error) == QMX_OK;
  id = isFound ? kFirstMember + found : DISPID_UNKNOWN;
  return isFound ? S_OK : DISP_E_UNKNOWNNAME;
}

ITypeInfo* MakeTypeInformation(qmx_object& object) { return new ServedType(object); }

}  // namespace orvan
