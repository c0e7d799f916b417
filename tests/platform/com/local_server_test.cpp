// Components in another apartment, which are called over COM's own proxies.
#include <gmock/gmock.h>

#include "platform/com/bstr.h"
#include "platform/com/com_components.h"
#include "platform/com/variant_values.h"
#include "platform/components.h"
#include "platform/error.h"
#include "tests/platform/com/host_object.h"
#include "tests/platform/com/registered_class.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::AnyOf;
using testing::StartsWith;

class ALocalServer : public testing::Test {
 protected:
  // Creates a component that answers so.
  Object Created(StubComponent::Answer answer) {
    server_ = std::make_unique<LocalServer>("QmxTest.Local", [answer] {
      auto component = StubComponent::Make(answer);
      return ComPtr<IUnknown>::Owning(component.Detach());
    });
    const FurtherComponents::Answer given = components_.Create("QmxTest.Local");
    EXPECT_TRUE(given.object) << given.refusal;
    return given.object;
  }

  std::shared_ptr<ComApartment> apartment_ = ComApartment::Enter();
  ComComponents components_;
  std::unique_ptr<LocalServer> server_;
};

TEST_F(ALocalServer, IsCalledWithArgumentsAndVariables) {
  const Object object = Created([](const StubComponent::Call& call) {
    EXPECT_EQ(call.parameters.rgvarg[2].lVal, 7);
    *call.parameters.rgvarg[1].plVal = 70000;
    VARIANT& text = *call.parameters.rgvarg[0].pvarVal;
    VariantClear(&text);
    text.vt = VT_R8;
    text.dblVal = 0.5;
    call.result->vt = VT_BSTR;
    call.result->bstrVal = NewBstr("Z\xC3\xBCrich");
    return S_OK;
  });
  Variant number = 1;
  Variant text = "before";
  EXPECT_EQ(object.Call("ask", 7, Ref(number), Ref(text)), Variant("Z\xC3\xBCrich"));
  EXPECT_EQ(number, Variant(70000));
  EXPECT_EQ(text, Variant(0.5));
}

TEST_F(ALocalServer, WritesVariablesOfItsParametersTypes) {
  const Object object = Created([](const StubComponent::Call& call) {
    const VARIANT& time = call.parameters.rgvarg[1];
    const VARIANT& text = call.parameters.rgvarg[0];
    if (time.vt != (VT_BYREF | VT_DATE) || text.vt != (VT_BYREF | VT_BSTR)) return DISP_E_TYPEMISMATCH;
    *time.pdate += 1;
    EXPECT_EQ(Utf8(View(*text.pbstrVal)), "before");
    EXPECT_NE(SysReAllocString(text.pbstrVal, L"a text that is longer"), FALSE);
    return S_OK;
  });
  Variant time = DateTime::FromDate(2026, 11, 23);
  Variant text = "before";
  object.Call("ask", Ref(time), Ref(text));
  EXPECT_EQ(time, Variant(DateTime::FromDate(2026, 11, 24)));
  EXPECT_EQ(text, Variant("a text that is longer"));
}

TEST_F(ALocalServer, KeepsItsErrors) {
  const Object object = Created([](const StubComponent::Call& call) {
    call.exception->scode = static_cast<HRESULT>(0x800A0046);
    call.exception->bstrSource = SysAllocString(L"Orvan");
    call.exception->bstrDescription = SysAllocString(L"You may not list service types.");
    return DISP_E_EXCEPTION;
  });
  const Error error = Raised([&] { object.Call("ask"); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_EQ(error.Source(), "Orvan");
  EXPECT_EQ(error.Description(), "You may not list service types.");
  EXPECT_EQ(Raised([&] { object.Call("none"); }).Number(), 438);
}

TEST_F(ALocalServer, CallsObjectsOfTheProgramBack) {
  const Object object = Created([](const StubComponent::Call& call) {
    wchar_t name[] = L"getYear";
    LPOLESTR names[] = {name};
    DISPID id = 0;
    IDispatch& date = *call.parameters.rgvarg[0].pdispVal;
    EXPECT_EQ(date.GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
    DISPPARAMS none{};
    return date.Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &none, call.result, nullptr, nullptr);
  });
  const Object date = HostObject::Make([](const Member& member, std::span<const Argument>) {
    EXPECT_EQ(member.Name(), "getYear");
    return Variant(126);
  });
  EXPECT_EQ(object.Call("ask", date), Variant(126));
}

TEST_F(ALocalServer, GivesObjectsThatAreCalledAndReleased) {
  const int before = StubComponent::living;
  {
    const Object object = Created([](const StubComponent::Call& call) {
      call.result->vt = VT_DISPATCH;
      call.result->pdispVal = StubComponent::Make([](const StubComponent::Call& inner) {
                                inner.result->vt = VT_I4;
                                inner.result->lVal = 5;
                                return S_OK;
                              }).Detach();
      return S_OK;
    });
    EXPECT_EQ(object.Call("ask").ToObject().Call("ask"), Variant(5));
    EXPECT_EQ(StubComponent::living, before + 1);
  }
  server_.reset();
  EXPECT_EQ(StubComponent::living, before);
}

TEST_F(ALocalServer, ThatHasEndedFailsEachCallAndCanBeReleased) {
  Object object = Created([](const StubComponent::Call&) { return S_OK; });
  object.Call("ask");
  server_->Disconnect();
  for (int time = 0; time < 2; ++time) {
    const Error error = Raised([&] { object.Call("ask"); });
    // Windows says that the object is disconnected, Wine that it no longer has the interface.
    EXPECT_THAT(error.DetailOf("hresult"), AnyOf(StartsWith("0x80010108"), StartsWith("0x800706B5")));
    EXPECT_EQ(error.DetailOf("member"), "ask");
    EXPECT_EQ(error.DetailOf("progid"), "QmxTest.Local");
  }
  object = Object();
  EXPECT_THAT(components_.Create("QmxTest.Local").refusal, StartsWith("COM: its class {"));
}

}  // namespace
}  // namespace qmx::test
