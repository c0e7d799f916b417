#include "platform/com/com_object.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/com/bstr.h"
#include "platform/com/hresult.h"
#include "platform/com/objects.h"
#include "platform/com/variant_values.h"
#include "platform/error.h"
#include "platform/interruption.h"
#include "platform/running_call.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using Call = StubComponent::Call;

// {5A6B1C52-2E0C-4A55-9D60-0000000000nn}
GUID TypeId(unsigned char last) { return {0x5A6B1C52, 0x2E0C, 0x4A55, {0x9D, 0x60, 0, 0, 0, 0, 0, last}}; }

ComPtr<ITypeInfo> Information(unsigned char id, std::wstring name, std::vector<std::wstring> members) {
  return ComPtr<ITypeInfo>::Owning(new StubTypeInfo(TypeId(id), std::move(name), std::move(members)));
}

HRESULT GiveNumber(const Call& call, LONG number) {
  call.result->vt = VT_I4;
  call.result->lVal = number;
  return S_OK;
}

TEST(AnObjectOfComponent, IsCalledAsAMethodOrAProperty) {
  WORD flags = 0;
  const auto component = StubComponent::Make([&](const Call& call) {
    flags = call.flags;
    return GiveNumber(call, call.id);
  });
  EXPECT_EQ(ObjectFrom(component.Get()).Call("ASK"), Variant(1));
  EXPECT_EQ(flags, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
}

TEST(AnObjectOfComponent, ReceivesArgumentsLastFirst) {
  const auto component = StubComponent::Make([](const Call& call) {
    EXPECT_EQ(call.parameters.cArgs, 2u);
    return GiveNumber(call, call.parameters.rgvarg[1].lVal * 10 + call.parameters.rgvarg[0].lVal);
  });
  EXPECT_EQ(ObjectFrom(component.Get()).Call("ask", 4, 2), Variant(42));
}

TEST(AnObjectOfComponent, WritesVariablesThatArePassedByReference) {
  const auto component = StubComponent::Make([](const Call& call) {
    *call.parameters.rgvarg[1].plVal += 1;
    VARIANT& text = *call.parameters.rgvarg[0].pvarVal;
    VariantClear(&text);
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"written");
    return S_OK;
  });
  Variant number = 1;
  Variant text = "before";
  EXPECT_EQ(ObjectFrom(component.Get()).Call("ask", Ref(number), Ref(text)), Variant());
  EXPECT_EQ(number, Variant(2));
  EXPECT_EQ(text, Variant("written"));
}

TEST(AnObjectOfComponent, ChangesNoVariableInACallThatFails) {
  const auto component = StubComponent::Make([](const Call& call) {
    *call.parameters.rgvarg[0].plVal = 7;
    return E_FAIL;
  });
  Variant number = 1;
  EXPECT_EQ(Raised([&] { ObjectFrom(component.Get()).Call("ask", Ref(number)); }).Number(), E_FAIL);
  EXPECT_EQ(number, Variant(1));
}

TEST(AnObjectOfComponent, IsReleasedWithItsLastReference) {
  const auto component = StubComponent::Make({});
  {
    const Object object = ObjectFrom(component.Get());
    EXPECT_EQ(component->references, 2u);
  }
  EXPECT_EQ(component->references, 1u);
}

TEST(AnObjectThatACallGives, IsReleasedOnce) {
  const int before = StubComponent::living;
  {
    const auto component = StubComponent::Make([](const Call& call) {
      call.result->vt = VT_DISPATCH;
      call.result->pdispVal = StubComponent::Make([](const Call& inner) { return GiveNumber(inner, 5); }).Detach();
      return S_OK;
    });
    const Object given = ObjectFrom(component.Get()).Call("ask").ToObject();
    EXPECT_EQ(given.Call("ask"), Variant(5));
    EXPECT_EQ(StubComponent::living, before + 2);
  }
  EXPECT_EQ(StubComponent::living, before);
}

TEST(AMember, IsLookedUpOnceForAllObjectsOfAType) {
  const auto information = Information(1, L"Record", {L"first", L"second"});
  const Member second("second");
  int lookUps = 0;
  for (int i = 0; i < 3; ++i) {
    const auto component =
        StubComponent::Make([](const Call& call) { return GiveNumber(call, call.id); }, {L"first", L"second"});
    component->information = information;
    EXPECT_EQ(ObjectFrom(component.Get()).Call(second), Variant(2));
    EXPECT_EQ(ObjectFrom(component.Get()).Call("Second"), Variant(2));  // another place of use
    lookUps += component->lookUps;
  }
  EXPECT_EQ(lookUps, 1);
}

TEST(AMember, IsLookedUpAgainForAnotherType) {
  const Member member("ask");
  const auto answer = [](const Call& call) { return GiveNumber(call, call.id); };
  const auto one = StubComponent::Make(answer, {L"ask"}, 10);
  one->information = Information(2, L"One", {});
  const auto other = StubComponent::Make(answer, {L"ask"}, 20);
  other->information = Information(3, L"Other", {});
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ObjectFrom(one.Get()).Call(member), Variant(10));
    EXPECT_EQ(ObjectFrom(other.Get()).Call(member), Variant(20));
  }
}

TEST(AMember, ThatTheTypeInformationDoesNotHaveIsLookedUpForEachObject) {
  const Member member("ask");
  const auto information = Information(4, L"Script", {L"otherMember"});
  const auto answer = [](const Call& call) { return GiveNumber(call, call.id); };
  const auto one = StubComponent::Make(answer, {L"ask"}, 10);
  const auto other = StubComponent::Make(answer, {L"ask"}, 20);
  one->information = other->information = information;
  EXPECT_EQ(ObjectFrom(one.Get()).Call(member), Variant(10));
  EXPECT_EQ(ObjectFrom(other.Get()).Call(member), Variant(20));
}

TEST(AMember, WithAnotherIdThanTheTypeInformationHasIsLookedUpForEachObject) {
  const Member member("ask");
  const auto information = Information(5, L"Script", {L"ask"});  // id 1
  const auto answer = [](const Call& call) { return GiveNumber(call, call.id); };
  const auto one = StubComponent::Make(answer, {L"ask"}, 10);
  const auto other = StubComponent::Make(answer, {L"ask"}, 20);
  one->information = other->information = information;
  EXPECT_EQ(ObjectFrom(one.Get()).Call(member), Variant(10));
  EXPECT_EQ(ObjectFrom(other.Get()).Call(member), Variant(20));
}

TEST(AMember, OfAnObjectWithoutTypeInformationIsLookedUpForEachObject) {
  const Member member("ask");
  const auto answer = [](const Call& call) { return GiveNumber(call, call.id); };
  EXPECT_EQ(ObjectFrom(StubComponent::Make(answer, {L"ask"}, 10).Get()).Call(member), Variant(10));
  EXPECT_EQ(ObjectFrom(StubComponent::Make(answer, {L"ask"}, 20).Get()).Call(member), Variant(20));
}

TEST(AMember, OfATypeWithoutAGuidIsLookedUpForEachObject) {
  const Member member("ask");
  const auto answer = [](const Call& call) { return GiveNumber(call, call.id); };
  const auto information = ComPtr<ITypeInfo>::Owning(new StubTypeInfo(GUID{}, L"Record", {L"ask"}));
  const auto one = StubComponent::Make(answer, {L"ask"}, 1);
  const auto other = StubComponent::Make(answer, {L"ask"}, 20);
  one->information = other->information = information;
  EXPECT_EQ(ObjectFrom(one.Get()).Call(member), Variant(1));
  EXPECT_EQ(ObjectFrom(other.Get()).Call(member), Variant(20));
}

TEST(AMember, OfATypeWithoutAttributesIsLookedUpForEachObject) {
  const auto component = StubComponent::Make([](const Call& call) { return GiveNumber(call, call.id); });
  auto* const information = new StubTypeInfo(TypeId(9), L"Record", {L"ask"});
  information->hasAttributes = false;
  component->information = ComPtr<ITypeInfo>::Owning(information);
  const Object object = ObjectFrom(component.Get());
  EXPECT_EQ(object.Call("ask"), Variant(1));
  EXPECT_EQ(object.Call("ask"), Variant(1));
  EXPECT_EQ(component->lookUps, 2);
}

TEST(AMember, ThatAComponentDoesNotHaveIsError438) {
  const auto component = StubComponent::Make({});
  component->information = Information(6, L"Manager", {});
  const Error error = Raised([&] { ObjectFrom(component.Get(), "A.Manager").Call("Liste"); });
  EXPECT_EQ(error.Number(), 438);
  EXPECT_EQ(error.Source(), "A.Manager");
  EXPECT_EQ(error.Description(), "The component has no member \"Liste\".");
  EXPECT_EQ(error.DetailOf("member"), "Liste");
  EXPECT_EQ(error.DetailOf("progid"), "A.Manager");
  EXPECT_EQ(error.DetailOf("type"), "Manager");
  EXPECT_EQ(error.DetailOf("hresult").find("0x80020006"), 0u);
  EXPECT_EQ(component->invocations, 0);
}

TEST(AMember, ThatAComponentDeniesWhenItIsCalledIsError438) {
  const auto component = StubComponent::Make([](const Call&) { return DISP_E_MEMBERNOTFOUND; });
  EXPECT_EQ(Raised([&] { ObjectFrom(component.Get()).Call("ask"); }).Number(), 438);
}

TEST(AFailedCall, KeepsTheErrorThatTheComponentDescribes) {
  const auto component = StubComponent::Make([](const Call& call) {
    call.exception->scode = static_cast<HRESULT>(0x800A0046);
    call.exception->bstrSource = SysAllocString(L"Orvan");
    call.exception->bstrDescription = SysAllocString(L"You may not list service types.");
    return DISP_E_EXCEPTION;
  });
  const Error error = Raised([&] { ObjectFrom(component.Get(), "A.Manager").Call("ask"); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_EQ(error.Source(), "Orvan");
  EXPECT_EQ(error.Description(), "You may not list service types.");
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"member", "ask"}, {"progid", "A.Manager"}}));
}

TEST(AFailedCall, WithAnExceptionWithoutASourceHasTheProgIdAsItsSource) {
  const auto component = StubComponent::Make([](const Call& call) {
    call.exception->bstrDescription = SysAllocString(L"It failed.");
    return DISP_E_EXCEPTION;
  });
  EXPECT_EQ(Raised([&] { ObjectFrom(component.Get(), "A.Manager").Call("ask"); }).Source(), "A.Manager");
}

TEST(AFailedCall, WithAnExceptionOfCppIsAnErrorThatNamesTheMember) {
  const auto component =
      StubComponent::Make([](const Call&) -> HRESULT { throw std::runtime_error("there is no licence"); });
  component->information = Information(10, L"Manager", {L"ask"});
  const Object object = ObjectFrom(component.Get(), "A.Manager");
  for (int time = 0; time < 2; ++time) {  // the member is looked up first, then known
    const Error error = Raised([&] { object.Call("ask"); });
    EXPECT_EQ(error.Number(), 51);
    EXPECT_EQ(error.Description(), "there is no licence");
    EXPECT_EQ(error.DetailOf("member"), "ask");
    EXPECT_EQ(error.DetailOf("progid"), "A.Manager");
  }
}

TEST(AFailedCall, WithAWrongTypeOfAnArgumentThatIsNotNamedNamesNone) {
  const auto component = StubComponent::Make([](const Call&) { return DISP_E_TYPEMISMATCH; });
  EXPECT_EQ(Raised([&] { ObjectFrom(component.Get()).Call("ask", 1, 2); }).Description(),
            "Type mismatch: the component refuses the type of an argument of \"ask\".");
}

TEST(AFailedCall, WithAWrongNumberOfArgumentsIsError450) {
  const auto component = StubComponent::Make([](const Call&) { return DISP_E_BADPARAMCOUNT; });
  const Error error = Raised([&] { ObjectFrom(component.Get()).Call("ask", 1, 2); });
  EXPECT_EQ(error.Number(), 450);
  EXPECT_EQ(error.Description(), "\"ask\" does not take 2 arguments.");
}

TEST(AFailedCall, WithAWrongTypeNamesTheArgumentByItsPlace) {
  const auto component = StubComponent::Make([](const Call& call) {
    *call.wrongArgument = 0;  // the last one
    return DISP_E_TYPEMISMATCH;
  });
  const Error error = Raised([&] { ObjectFrom(component.Get()).Call("ask", 1, 2, "three"); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Description(), "Type mismatch: the component refuses the type of argument 3 of 3 of \"ask\".");
}

TEST(AFailedCall, WithAWrongTypeOfAnUnknownArgumentNamesNone) {
  const auto component = StubComponent::Make([](const Call& call) {
    *call.wrongArgument = 17;
    return DISP_E_TYPEMISMATCH;
  });
  EXPECT_EQ(Raised([&] { ObjectFrom(component.Get()).Call("ask", 1); }).Description(),
            "Type mismatch: the component refuses the type of an argument of \"ask\".");
}

TEST(AFailedCall, WithAnotherResultHasItAsItsNumber) {
  const auto component = StubComponent::Make([](const Call&) { return E_ACCESSDENIED; });
  const Error error = Raised([&] { ObjectFrom(component.Get()).Call("ask"); });
  EXPECT_EQ(error.Number(), E_ACCESSDENIED);
  EXPECT_EQ(error.Source(), "COM");
  EXPECT_EQ(error.Description(), "The call of \"ask\" failed with " + DescribeHresult(E_ACCESSDENIED) + ".");
  EXPECT_EQ(error.DetailOf("hresult"), DescribeHresult(E_ACCESSDENIED));
}

TEST(AFailedCall, OfAGetterThatWorkedBeforeHasTheSameDetails) {
  bool fails = false;
  const auto component =
      StubComponent::Make([&](const Call& call) { return fails ? E_ACCESSDENIED : GiveNumber(call, 1); });
  component->information = Information(7, L"Record", {L"ask"});
  const Object object = ObjectFrom(component.Get(), "A.Record");
  const Member ask("ask");
  EXPECT_EQ(object.Call(ask), Variant(1));
  fails = true;
  const Error error = Raised([&] { object.Call(ask); });
  EXPECT_EQ(error.Number(), E_ACCESSDENIED);
  EXPECT_EQ(error.DetailOf("member"), "ask");
  EXPECT_EQ(error.DetailOf("progid"), "A.Record");
  EXPECT_EQ(error.DetailOf("type"), "Record");
}

TEST(AResultThatCannotBeTaken, IsAnErrorThatNamesTheMember) {
  const auto component = StubComponent::Make([](const Call& call) {
    call.result->vt = VT_ERROR;
    call.result->scode = E_FAIL;
    return S_OK;
  });
  const Error error = Raised([&] { ObjectFrom(component.Get()).Call("ask"); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.DetailOf("member"), "ask");
}

TEST(AResultThatIsAText, IsFreed) {
  const auto component = StubComponent::Make([](const Call& call) {
    call.result->vt = VT_BSTR;
    call.result->bstrVal = NewBstr("Z\xC3\xBCrich");
    return S_OK;
  });
  EXPECT_EQ(ObjectFrom(component.Get()).Call("ask"), Variant("Z\xC3\xBCrich"));
}

TEST(ARequestToEnd, IsRaisedByTheNextCallToTheErpButClose) {
  const auto component = StubComponent::Make([](const Call& call) { return GiveNumber(call, 1); }, {L"ask", L"Close"});
  component->information = Information(8, L"Manager", {L"ask", L"Close"});
  const Object object = ObjectFrom(component.Get(), "A.Manager");
  const Member ask("ask");
  object.Call(ask);
  Interruption::Request("CTRL_C");
  EXPECT_EQ(object.Call("close"), Variant(1));
  EXPECT_EQ(Raised([&] { object.Call(ask); }).Number(), 18);
  EXPECT_EQ(object.Call(ask), Variant(1));
}

TEST(ARequestToEnd, IsNotRaisedByTheSchedulingServer) {
  const auto component = StubComponent::Make([](const Call& call) { return GiveNumber(call, 1); });
  const Object object = ObjectFrom(component.Get(), "QMXServer20.clsMessHandler");
  Interruption::Request("CTRL_C");
  EXPECT_EQ(object.Call("ask"), Variant(1));
  EXPECT_EQ(Raised([] { Interruption::RaiseIfRequested(); }).Number(), 18);
}

// The running call, "A.Manager ask".
std::string Running() {
  const char* const progId = RunningCall::ProgId();
  const char* const member = RunningCall::Member();
  return std::string(progId ? progId : "-") + " " + (member ? member : "-");
}

TEST(ACallThatRuns, IsKnownByItsProgIdAndMember) {
  std::vector<std::string> running;
  const auto component = StubComponent::Make([&](const Call&) {
    running.push_back(Running());
    return S_OK;
  });
  component->information = Information(11, L"Manager", {L"ask"});
  const Object object = ObjectFrom(component.Get(), "A.Manager");
  const Member ask("ask");
  object.Call(ask);
  object.Call(ask);  // the way of a getter whose id is known
  EXPECT_EQ(running, (std::vector<std::string>{"A.Manager ask", "A.Manager ask"}));
  EXPECT_EQ(RunningCall::Member(), nullptr);
}

TEST(ACallThatRuns, OfAnObjectThatACallGaveIsThatOfTheProgIdItCameFrom) {
  std::string running;
  const auto given = StubComponent::Make([&](const Call&) {
    running = Running();
    return S_OK;
  });
  const auto component = StubComponent::Make([&](const Call& call) {
    call.result->vt = VT_DISPATCH;
    call.result->pdispVal = ComPtr<StubComponent>(given).Detach();
    return S_OK;
  });
  const Object object = ObjectFrom(component.Get(), "A.Manager").Call("ask").ToObject();
  ObjectFrom(StubComponent::Make([](const Call&) { return S_OK; }).Get(), "Another.Manager").Call("ask");
  object.Call("ask");
  EXPECT_EQ(running, "A.Manager ask");
}

TEST(ALookUpThatRuns, IsKnownByItsProgIdAndMember) {
  std::string running;
  const auto component = StubComponent::Make([](const Call&) { return S_OK; });
  component->whenLookedUp = [&] { running = Running(); };
  ObjectFrom(component.Get(), "A.Manager").Call("ask");
  EXPECT_EQ(running, "A.Manager ask");
}

TEST(AReleaseThatRuns, IsKnownByItsProgIdAndLeavesTheOuterCallAsTheRunningOne) {
  std::string released, after;
  auto inner = StubComponent::Make({});
  inner->whenReleased = [&] { released = Running(); };
  Object object = ObjectFrom(inner.Get(), "Inner.Object");
  inner = {};
  const auto outer = StubComponent::Make([&](const Call&) {
    object = Object();
    after = Running();
    return S_OK;
  });
  ObjectFrom(outer.Get(), "Outer.Object").Call("ask");
  EXPECT_EQ(released, "Inner.Object release");
  EXPECT_EQ(after, "Outer.Object ask");
}

}  // namespace
}  // namespace qmx::test
