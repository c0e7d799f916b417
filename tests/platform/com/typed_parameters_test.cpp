// Components whose parameters have types: OLE Automation takes their arguments, by the types that their type library
// has.
#include <gtest/gtest.h>
#include <oaidl.h>
#include <oleauto.h>

#include <vector>

#include "platform/com/bstr.h"
#include "platform/com/objects.h"
#include "platform/components.h"
#include "platform/datetime.h"
#include "platform/error.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

// A dual interface: its functions follow those of IDispatch.
struct TypedInterface : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE WriteMessage(DATE* time, BSTR text) = 0;
  virtual HRESULT STDMETHODCALLTYPE UpdateStatus(LONG* request, BSTR* tableName, SHORT status) = 0;
  virtual HRESULT STDMETHODCALLTYPE TakeAny(VARIANT* any, BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE TakeVariant(VARIANT* any) = 0;
};
constexpr GUID kTypedInterface = {0x5A6B1C52, 0x2E0C, 0x4A55, {0x9D, 0x60, 0, 0, 0, 0, 0, 0x31}};

struct Function {
  std::wstring name;
  std::vector<VARTYPE> parameters;
};

const std::vector<Function>& Functions() {
  static const std::vector<Function> functions = {
      {L"writeMessage", {VT_BYREF | VT_DATE, VT_BSTR}},
      {L"updateStatus", {VT_BYREF | VT_I4, VT_BYREF | VT_BSTR, VT_I2}},
      {L"takeAny", {VT_BYREF | VT_VARIANT, VT_BYREF | VT_BSTR}},
      {L"takeVariant", {VT_BYREF | VT_VARIANT}},
  };
  return functions;
}

void Describe(const Function& function, UINT place, ICreateTypeInfo& type) {
  std::vector<TYPEDESC> types(function.parameters.size());
  std::vector<ELEMDESC> parameters(types.size());
  for (std::size_t i = 0; i < types.size(); ++i) {
    types[i].vt = function.parameters[i] & ~VT_BYREF;
    const bool isReference = (function.parameters[i] & VT_BYREF) != 0;
    parameters[i].tdesc.vt = isReference ? VARTYPE{VT_PTR} : types[i].vt;
    if (isReference) parameters[i].tdesc.lptdesc = &types[i];
    parameters[i].paramdesc.wParamFlags = isReference ? PARAMFLAG_FIN | PARAMFLAG_FOUT : PARAMFLAG_FIN;
  }
  FUNCDESC description{};
  description.memid = static_cast<MEMBERID>(place) + 1;
  description.funckind = FUNC_PUREVIRTUAL;
  description.invkind = INVOKE_FUNC;
  description.callconv = CC_STDCALL;
  description.cParams = static_cast<SHORT>(parameters.size());
  description.lprgelemdescParam = parameters.data();
  description.elemdescFunc.tdesc.vt = VT_HRESULT;
  EXPECT_EQ(type.AddFuncDesc(place, &description), S_OK);
  std::wstring name = function.name;
  LPOLESTR names[] = {name.data()};
  EXPECT_EQ(type.SetFuncAndParamNames(place, names, 1), S_OK);
}

// Makes a type library in the folder.
std::wstring MadeLibrary(const TempFolder& folder) {
  const std::wstring path = Wide(folder / "typed.tlb");
  ComPtr<ITypeLib> standard;
  EXPECT_EQ(LoadTypeLib(L"stdole2.tlb", standard.Receiver()), S_OK);
  ComPtr<ITypeInfo> dispatch;
  EXPECT_EQ(standard->GetTypeInfoOfGuid(IID_IDispatch, dispatch.Receiver()), S_OK);
  ComPtr<ICreateTypeLib2> library;
  EXPECT_EQ(CreateTypeLib2(SYS_WIN64, path.c_str(), library.Receiver()), S_OK);
  ComPtr<ICreateTypeInfo> type;
  std::wstring name = L"ITyped";
  EXPECT_EQ(library->CreateTypeInfo(name.data(), TKIND_INTERFACE, type.Receiver()), S_OK);
  EXPECT_EQ(type->SetGuid(kTypedInterface), S_OK);
  EXPECT_EQ(type->SetTypeFlags(TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION), S_OK);
  HREFTYPE base = 0;
  EXPECT_EQ(type->AddRefTypeInfo(dispatch.Get(), &base), S_OK);
  EXPECT_EQ(type->AddImplType(0, base), S_OK);
  for (UINT i = 0; i < Functions().size(); ++i) Describe(Functions()[i], i, *type);
  EXPECT_EQ(type->LayOut(), S_OK);
  EXPECT_EQ(library->SaveAllChanges(), S_OK);
  return path;
}

ComPtr<ITypeInfo> Information() {
  const TempFolder folder;
  ComPtr<ITypeLib> library;
  EXPECT_EQ(LoadTypeLibEx(MadeLibrary(folder).c_str(), REGKIND_NONE, library.Receiver()), S_OK);
  ComPtr<ITypeInfo> information;
  EXPECT_EQ(library->GetTypeInfoOfGuid(kTypedInterface, information.Receiver()), S_OK);
  return information;
}

class TypedComponent final : public TypedInterface {
 public:
  virtual ~TypedComponent() = default;

  std::string received;
  int calls = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool isKnown = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch);
    *object = isKnown ? this : nullptr;
    if (!isKnown) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** information) override {
    *information = ComPtr<ITypeInfo>(information_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    return DispGetIDsOfNames(information_.Get(), names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* exception, UINT* wrongArgument) override {
    return DispInvoke(this, information_.Get(), id, flags, parameters, result, exception, wrongArgument);
  }

  HRESULT STDMETHODCALLTYPE WriteMessage(DATE* time, BSTR text) override {
    received = Utf8(View(text)) + " at " + std::to_string(*time);
    *time += 1;
    ++calls;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE UpdateStatus(LONG* request, BSTR* tableName, SHORT status) override {
    received = std::to_string(*request) + ' ' + Utf8(View(*tableName)) + ' ' + std::to_string(status);
    *request += 1;
    Replace(*tableName, L"written");
    ++calls;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE TakeAny(VARIANT* any, BSTR* text) override {
    received = Utf8(View(*text));
    Replace(*text, L"written");
    return TakeVariant(any);
  }
  // As a typed language writes into a variable that may be one of a type or one of any.
  HRESULT STDMETHODCALLTYPE TakeVariant(VARIANT* any) override {
    if (any->vt == (VT_BYREF | VT_BSTR)) {
      Replace(*any->pbstrVal, L"typed");
    } else {
      VariantClear(any);
      any->vt = VT_R8;
      any->dblVal = 0.5;
    }
    ++calls;
    return S_OK;
  }

 private:
  static void Replace(BSTR& text, const wchar_t* other) { EXPECT_NE(SysReAllocString(&text, other), FALSE); }

  ULONG references_ = 1;
  ComPtr<ITypeInfo> information_ = Information();
};

class TypedParameters : public testing::Test {
 protected:
  ComPtr<TypedComponent> component_ = ComPtr<TypedComponent>::Owning(new TypedComponent);
  Object object_ = ObjectFrom(component_.Get(), "A.Typed");
};

TEST_F(TypedParameters, TakeAVariableThatIsADate) {
  Variant time = DateTime::FromDate(2026, 11, 23);
  EXPECT_EQ(object_.Call("writeMessage", Ref(time), "Data copy started"), Variant());
  EXPECT_EQ(component_->received, "Data copy started at 46349.000000");
  EXPECT_EQ(time, Variant(DateTime::FromDate(2026, 11, 24)));
}

TEST_F(TypedParameters, TakeAVariableThatIsAText) {
  Variant request = 17;
  Variant table = "tsmdm030";
  EXPECT_EQ(object_.Call("updateStatus", Ref(request), Ref(table), std::int16_t{10}), Variant());
  EXPECT_EQ(component_->received, "17 tsmdm030 10");
  EXPECT_EQ(request, Variant(18));
  EXPECT_EQ(table, Variant("written"));
}

TEST_F(TypedParameters, TakeVariablesBesideAParameterOfAnyType) {
  Variant any = "before";
  Variant table = "tsmdm030";
  EXPECT_EQ(object_.Call("takeAny", Ref(any), Ref(table)), Variant());
  EXPECT_EQ(component_->received, "tsmdm030");
  EXPECT_EQ(any, Variant("typed"));
  EXPECT_EQ(table, Variant("written"));
}

TEST_F(TypedParameters, OfAnyTypeMayWriteAValueOfAnotherType) {
  Variant any = "before";
  EXPECT_EQ(object_.Call("takeVariant", Ref(any)), Variant());
  EXPECT_EQ(any, Variant(0.5));
}

// A component may refuse what it was given after it has worked, too.
TEST_F(TypedParameters, AreNotTriedWhereNoOtherTypeIsLeft) {
  int calls = 0;
  const auto component = StubComponent::Make([&](const StubComponent::Call&) {
    ++calls;
    return DISP_E_TYPEMISMATCH;
  });
  const Object object = ObjectFrom(component.Get());
  Variant number = 1;
  Variant empty;
  EXPECT_EQ(Raised([&] { object.Call("ask", Ref(number), Ref(empty), "text"); }).Number(), 13);
  EXPECT_EQ(calls, 1);
  Variant text = "text";
  EXPECT_EQ(Raised([&] { object.Call("ask", Ref(text)); }).Number(), 13);
  EXPECT_EQ(calls, 3);
}

// An error of the member itself is an exception of the component.
TEST_F(TypedParameters, AreNotTriedAfterAnExceptionOfTheComponent) {
  int calls = 0;
  const auto component = StubComponent::Make([&](const StubComponent::Call& call) {
    ++calls;
    call.exception->scode = DISP_E_TYPEMISMATCH;
    return DISP_E_EXCEPTION;
  });
  Variant text = "text";
  EXPECT_EQ(Raised([&] { ObjectFrom(component.Get()).Call("ask", Ref(text)); }).Number(), 13);
  EXPECT_EQ(calls, 1);
}

TEST_F(TypedParameters, RefuseAVariableOfAnotherTypeAndChangeNothing) {
  Variant time = "today";
  const Error error = Raised([&] { object_.Call("writeMessage", Ref(time), "text"); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.DetailOf("member"), "writeMessage");
  EXPECT_EQ(component_->calls, 0);
  EXPECT_EQ(time, Variant("today"));
}

}  // namespace
}  // namespace qmx::test
