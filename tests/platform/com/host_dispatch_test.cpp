#include "platform/com/host_dispatch.h"

#include <gtest/gtest.h>

#include "platform/com/bstr.h"
#include "platform/com/com_error.h"
#include "platform/com/hresult.h"
#include "platform/com/objects.h"
#include "platform/com/variant_values.h"
#include "platform/error.h"
#include "platform/running_call.h"
#include "tests/platform/com/host_object.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

// What a component does with an object of the program.
class Caller {
 public:
  explicit Caller(HostObject::Answer answer) : dispatch_(DispatchOf(HostObject::Make(std::move(answer)))) {}

  DISPID Id(std::wstring name) {
    LPOLESTR names[] = {name.data()};
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(dispatch_->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
    return id;
  }

  HRESULT Call(DISPID id, std::vector<VARIANT> lastFirst = {}, WORD flags = DISPATCH_METHOD) {
    DISPPARAMS parameters{lastFirst.data(), nullptr, static_cast<UINT>(lastFirst.size()), 0};
    return dispatch_->Invoke(id, IID_NULL, 0, flags, &parameters, result_.Get(), exception_.Receiver(), nullptr);
  }

  Variant Result() const { return FromVariant(result_.Value()); }
  Error Failure() { return exception_.ToError("none"); }
  IDispatch& Interface() { return *dispatch_; }

 private:
  ComPtr<IDispatch> dispatch_;
  OwnedVariant result_;
  Exception exception_;
};

VARIANT Integer(LONG number) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

VARIANT Reference(VARTYPE type, void* address) {
  VARIANT value;
  VariantInit(&value);
  value.vt = static_cast<VARTYPE>(VT_BYREF | type);
  value.byref = address;
  return value;
}

TEST(AComponent, CallsAnObjectOfTheProgramByName) {
  std::string seen;
  Caller caller([&](const Member& member, std::span<const Argument> arguments) {
    seen = std::string(member.Name()) + " " + arguments[0].Value().ToText() + " " + arguments[1].Value().ToText();
    return Variant("answer");
  });
  EXPECT_EQ(caller.Call(caller.Id(L"setDate"), {Integer(2), Integer(1)}), S_OK);
  EXPECT_EQ(seen, "setDate 1 2");
  EXPECT_EQ(caller.Result(), Variant("answer"));
}

TEST(AComponent, MayLeaveOutTheResult) {
  Caller caller([](const Member&, std::span<const Argument>) { return Variant("answer"); });
  DISPPARAMS none{};
  EXPECT_EQ(
      caller.Interface().Invoke(caller.Id(L"ask"), IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
      S_OK);
}

TEST(AComponent, ReadsTheErrorOfTheProgram) {
  Caller caller([](const Member&, std::span<const Argument>) -> Variant { throw Error(6, "Date", "Too large."); });
  EXPECT_EQ(caller.Call(caller.Id(L"ask")), DISP_E_EXCEPTION);
  EXPECT_EQ(caller.Failure().Number(), 6);
  EXPECT_EQ(caller.Failure().Source(), "Date");
  EXPECT_EQ(caller.Failure().Description(), "Too large.");
}

TEST(AComponent, NeverSeesAnotherException) {
  Caller caller([](const Member&, std::span<const Argument>) -> Variant { throw std::runtime_error("odd"); });
  EXPECT_EQ(caller.Call(caller.Id(L"ask")), DISP_E_EXCEPTION);
  EXPECT_EQ(caller.Failure().Number(), 51);
  EXPECT_EQ(caller.Failure().Description(), "odd");
}

TEST(AComponent, FindsNoMemberUnderAnIdThatNoNameHas) {
  Caller caller([](const Member&, std::span<const Argument>) { return Variant(); });
  EXPECT_EQ(caller.Call(-7), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(caller.Call(1000000), DISP_E_MEMBERNOTFOUND);
}

TEST(AComponent, FindsNoDefaultMember) {
  Caller caller([](const Member&, std::span<const Argument>) { return Variant(); });
  caller.Id(L"ask");
  EXPECT_EQ(caller.Call(DISPID_VALUE), DISP_E_MEMBERNOTFOUND);
}

TEST(AComponent, CannotSetAProperty) {
  Caller caller([](const Member&, std::span<const Argument>) { return Variant(); });
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Integer(1)}, DISPATCH_PROPERTYPUT), DISP_E_MEMBERNOTFOUND);
}

TEST(AComponent, CannotNameArguments) {
  Caller caller([](const Member&, std::span<const Argument>) { return Variant(); });
  VARIANT value = Integer(1);
  DISPID name = 0;
  DISPPARAMS named{&value, &name, 1, 1};
  EXPECT_EQ(
      caller.Interface().Invoke(caller.Id(L"ask"), IID_NULL, 0, DISPATCH_METHOD, &named, nullptr, nullptr, nullptr),
      DISP_E_NONAMEDARGS);
}

TEST(AComponent, CannotLookUpNamesOfArguments) {
  Caller caller({});
  wchar_t member[] = L"ask", argument[] = L"first";
  LPOLESTR names[] = {member, argument};
  DISPID ids[] = {0, 0};
  EXPECT_EQ(caller.Interface().GetIDsOfNames(IID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], caller.Id(L"ask"));
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST(AComponent, CannotLookUpNothing) {
  Caller caller({});
  wchar_t member[] = L"ask";
  LPOLESTR names[] = {member};
  DISPID id = 0;
  EXPECT_EQ(caller.Interface().GetIDsOfNames(IID_NULL, names, 0, 0, &id), E_INVALIDARG);
  EXPECT_EQ(caller.Interface().GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id), E_INVALIDARG);
  EXPECT_EQ(caller.Interface().GetIDsOfNames(IID_NULL, names, 1, 0, nullptr), E_INVALIDARG);
}

TEST(AComponent, CallsAMemberWithHalfACharacterInItsName) {
  std::string seen;
  Caller caller([&](const Member& member, std::span<const Argument>) {
    seen = std::string(member.Name());
    return Variant();
  });
  EXPECT_EQ(caller.Call(caller.Id(L"ask\xD83D")), S_OK);
  EXPECT_EQ(seen, "ask\xEF\xBF\xBD");
}

TEST(AComponent, CannotCallWithoutParameters) {
  Caller caller({});
  EXPECT_EQ(
      caller.Interface().Invoke(caller.Id(L"ask"), IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
      E_INVALIDARG);
  EXPECT_EQ(caller.Interface().QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(AComponent, MayReleaseAnObjectOfTheProgramWhileItCallsIt) {
  ComPtr<IDispatch> dispatch;
  std::weak_ptr<Dispatch> target;
  Object object = HostObject::Make([&](const Member&, std::span<const Argument>) {
    dispatch = {};
    EXPECT_FALSE(target.expired());
    return Variant(7);
  });
  target = object.Target();
  dispatch = DispatchOf(object);
  object = Object();
  wchar_t name[] = L"ask";
  LPOLESTR names[] = {name};
  DISPID id = 0;
  dispatch->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
  DISPPARAMS none{};
  OwnedVariant result;
  EXPECT_EQ(dispatch.Get()->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &none, result.Get(), nullptr, nullptr), S_OK);
  EXPECT_EQ(FromVariant(result.Value()), Variant(7));
  EXPECT_TRUE(target.expired());
}

TEST(AnObjectOfTheProgram, ThatWasReleasedIsForgotten) {
  ComPtr<IDispatch> dispatch = DispatchOf(HostObject::Make());
  const IUnknown* const identity = dispatch.Get();
  EXPECT_NE(HostDispatch::TargetOf(identity), nullptr);
  dispatch = {};
  EXPECT_EQ(HostDispatch::TargetOf(identity), nullptr);
}

TEST(AComponent, FindsNoTypeInformation) {
  Caller caller({});
  UINT count = 7;
  EXPECT_EQ(caller.Interface().GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
  ITypeInfo* information = nullptr;
  EXPECT_EQ(caller.Interface().GetTypeInfo(0, 0, &information), E_NOTIMPL);
}

TEST(AComponentsVariable, ReceivesWhatTheProgramWrote) {
  Caller caller([](const Member&, std::span<const Argument> arguments) {
    arguments[0].Write(7);
    arguments[1].Write("written");
    return Variant();
  });
  LONG number = 1;
  OwnedVariant text;
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Reference(VT_VARIANT, text.Get()), Reference(VT_I4, &number)}), S_OK);
  EXPECT_EQ(number, 7);
  EXPECT_EQ(FromVariant(text.Value()), Variant("written"));
}

TEST(AComponentsVariable, ReceivesTheValueAsItsType) {
  Caller caller([](const Member&, std::span<const Argument> arguments) {
    arguments[0].Write("12");
    arguments[1].Write(5);
    arguments[2].Write(true);
    arguments[3].Write(true);
    return Variant();
  });
  BSTR boolean = nullptr;
  SHORT number = 1;
  BSTR text = SysAllocString(L"before");
  DECIMAL decimal{};
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Reference(VT_BSTR, &boolean), Reference(VT_DECIMAL, &decimal),
                                            Reference(VT_BSTR, &text), Reference(VT_I2, &number)}),
            S_OK);
  EXPECT_EQ(number, 12);
  EXPECT_EQ(View(text), L"5");
  EXPECT_EQ(decimal.Lo64, 1u);
  EXPECT_EQ(View(boolean), L"True");
  SysFreeString(text);
  SysFreeString(boolean);
}

TEST(AComponentsVariable, ReceivesAnObject) {
  const auto other = StubComponent::Make({});
  Caller caller([&](const Member&, std::span<const Argument> arguments) {
    arguments[0].Write(ObjectFrom(other.Get()));
    return Variant();
  });
  const auto before = StubComponent::Make({});
  IDispatch* variable = ComPtr<StubComponent>(before).Detach();
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Reference(VT_DISPATCH, &variable)}), S_OK);
  EXPECT_EQ(variable, other.Get());
  EXPECT_EQ(before->references, 1u);  // the old one was released
  variable->Release();
}

TEST(AComponentsVariable, BehindTwoReferencesReceivesTheValue) {
  Caller caller([](const Member&, std::span<const Argument> arguments) {
    arguments[0].Write(7);
    return Variant();
  });
  LONG number = 1;
  VARIANT inner = Reference(VT_I4, &number);
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Reference(VT_VARIANT, &inner)}), S_OK);
  EXPECT_EQ(number, 7);
  EXPECT_EQ(inner.vt, VT_BYREF | VT_I4);
}

TEST(AComponentsVariable, OfAnotherTypeFailsAndChangesNone) {
  Caller caller([](const Member&, std::span<const Argument> arguments) {
    arguments[0].Write(7);
    arguments[1].Write("no number");
    return Variant("answer");
  });
  LONG first = 1;
  LONG second = 2;
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Reference(VT_I4, &second), Reference(VT_I4, &first)}), DISP_E_EXCEPTION);
  EXPECT_EQ(caller.Failure().Number(), 13);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
  EXPECT_EQ(caller.Result(), Variant());
}

TEST(AComponentsVariable, ThatIsTooSmallIsAnOverflow) {
  Caller caller([](const Member&, std::span<const Argument> arguments) {
    arguments[0].Write(70000);
    return Variant();
  });
  SHORT number = 1;
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Reference(VT_I2, &number)}), DISP_E_EXCEPTION);
  EXPECT_EQ(caller.Failure().Number(), 6);
  EXPECT_EQ(caller.Failure().Description(),
            "The value for a variable of type VT_I2 does not fit into it: " + DescribeHresult(DISP_E_OVERFLOW) + ".");
  EXPECT_EQ(number, 1);
}

TEST(AComponentsVariable, ThatTheProgramLeavesAloneIsNotTouched) {
  Caller caller([](const Member&, std::span<const Argument>) { return Variant(); });
  OwnedBstr text(NewBstr("before"));
  const BSTR before = *text.Receiver();
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {Reference(VT_BSTR, text.Receiver())}), S_OK);
  EXPECT_EQ(*text.Receiver(), before);
}

TEST(AComponentsArgument, ThatCannotBeTakenIsAnError) {
  Caller caller([](const Member&, std::span<const Argument>) { return Variant(); });
  VARIANT array;
  VariantInit(&array);
  array.vt = VT_ARRAY | VT_I4;
  EXPECT_EQ(caller.Call(caller.Id(L"ask"), {array, Integer(1)}), DISP_E_EXCEPTION);
  EXPECT_EQ(caller.Failure().Number(), 13);
}

TEST(ACallWithinACall, LeavesTheOuterCallAsTheRunningOne) {
  std::string after;
  const Object asked = HostObject::Make([](const Member&, std::span<const Argument>) {
    const RunningCall inner(RunningCall::KeepText("Inner"), RunningCall::KeepText("inner"));
    return Variant();
  });
  const auto component = StubComponent::Make([&](const StubComponent::Call& call) {
    wchar_t name[] = L"ask";
    LPOLESTR names[] = {name};
    DISPID id = 0;
    IDispatch& given = *call.parameters.rgvarg[0].pdispVal;
    given.GetIDsOfNames(IID_NULL, names, 1, 0, &id);
    DISPPARAMS none{};
    given.Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);
    after = std::string(RunningCall::ProgId()) + " " + RunningCall::Member();
    return S_OK;
  });
  ObjectFrom(component.Get(), "Outer.Object").Call("ask", asked);
  EXPECT_EQ(after, "Outer.Object ask");
}

TEST(AReleaseWithinACall, LeavesTheOuterCallAsTheRunningOne) {
  std::string after;
  auto held = ObjectFrom(StubComponent::Make({}).Get(), "Held.Object");
  ComPtr<IDispatch> host =
      DispatchOf(HostObject::Make([held](const Member&, std::span<const Argument>) { return Variant(); }));
  held = Object();
  const auto component = StubComponent::Make([&](const StubComponent::Call&) {
    host = {};
    after = std::string(RunningCall::ProgId()) + " " + RunningCall::Member();
    return S_OK;
  });
  ObjectFrom(component.Get(), "Outer.Object").Call("ask");
  EXPECT_EQ(after, "Outer.Object ask");
}

}  // namespace
}  // namespace qmx::test
