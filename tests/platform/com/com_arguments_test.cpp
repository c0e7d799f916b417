#include "platform/com/com_arguments.h"

#include <gtest/gtest.h>

#include "platform/com/bstr.h"
#include "platform/com/objects.h"
#include "platform/com/variant_values.h"
#include "platform/error.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

TEST(Arguments, ArePassedLastFirst) {
  const Argument arguments[] = {Argument(1), Argument("two"), Argument(3.0)};
  ComArguments list(arguments);
  const DISPPARAMS& passed = list.Parameters();
  ASSERT_EQ(passed.cArgs, 3u);
  EXPECT_EQ(passed.cNamedArgs, 0u);
  EXPECT_EQ(FromVariant(passed.rgvarg[0]), Variant(3.0));
  EXPECT_EQ(FromVariant(passed.rgvarg[1]), Variant("two"));
  EXPECT_EQ(FromVariant(passed.rgvarg[2]), Variant(1));
}

TEST(Arguments, MayBeNone) {
  ComArguments list({});
  EXPECT_EQ(list.Parameters().cArgs, 0u);
  EXPECT_EQ(list.Take(VARIANT{}), Variant());
}

TEST(AVariableOfANumber, IsPassedAsAReferenceOfItsType) {
  Variant boolean = true;
  Variant byte = std::uint8_t{1};
  Variant small = std::int16_t{1};
  Variant integer = 1;
  Variant fraction = 1.0;
  const Argument arguments[] = {Ref(boolean), Ref(byte), Ref(small), Ref(integer), Ref(fraction)};
  ComArguments list(arguments);
  const VARIANT* const passed = list.Parameters().rgvarg;
  EXPECT_EQ(passed[4].vt, VT_BYREF | VT_BOOL);
  EXPECT_EQ(passed[3].vt, VT_BYREF | VT_UI1);
  EXPECT_EQ(passed[2].vt, VT_BYREF | VT_I2);
  EXPECT_EQ(passed[1].vt, VT_BYREF | VT_I4);
  EXPECT_EQ(passed[0].vt, VT_BYREF | VT_R8);
}

TEST(AVariableOfAnotherKind, IsPassedAsAReferenceToAVariant) {
  Variant variables[] = {Variant(), Variant::Null(), DateTime(), "text", Object()};
  for (Variant& variable : variables) {
    const Argument arguments[] = {Ref(variable)};
    ComArguments list(arguments);
    EXPECT_EQ(list.Parameters().rgvarg[0].vt, VT_BYREF | VT_VARIANT);
    EXPECT_EQ(FromVariant(list.Parameters().rgvarg[0]), variable);
  }
}

TEST(AVariableOfAnotherKind, MayBePassedAsAReferenceOfItsType) {
  const auto component = StubComponent::Make({});
  Variant text = "before";
  Variant moment = DateTime::FromDate(2026, 11, 23);
  Variant object = ObjectFrom(component.Get());
  const Argument arguments[] = {Ref(text), Ref(moment), Ref(object)};
  ComArguments list(arguments, ComArguments::References::OwnTypes);
  const VARIANT* const passed = list.Parameters().rgvarg;
  EXPECT_EQ(passed[2].vt, VT_BYREF | VT_BSTR);
  EXPECT_EQ(passed[1].vt, VT_BYREF | VT_DATE);
  EXPECT_EQ(passed[0].vt, VT_BYREF | VT_DISPATCH);
  EXPECT_NE(SysReAllocString(passed[2].pbstrVal, L"written"), FALSE);
  *passed[1].pdate += 1;
  list.Take(VARIANT{});
  EXPECT_EQ(text, Variant("written"));
  EXPECT_EQ(moment, Variant(DateTime::FromDate(2026, 11, 24)));
  EXPECT_EQ(object, Variant(ObjectFrom(component.Get())));
}

TEST(AVariableWithoutAType, IsAlwaysPassedAsAReferenceToAVariant) {
  Variant empty;
  Variant null = Variant::Null();
  const Argument arguments[] = {Ref(empty), Ref(null)};
  ComArguments list(arguments, ComArguments::References::OwnTypes);
  EXPECT_EQ(list.Parameters().rgvarg[1].vt, VT_BYREF | VT_VARIANT);
  EXPECT_EQ(list.Parameters().rgvarg[0].vt, VT_BYREF | VT_VARIANT);
}

TEST(Arguments, HaveOtherTypesOnlyIfAVariableOfATypeIsPassedAsAVariant) {
  Variant text = "text";
  Variant number = 1;
  Variant empty;
  const auto haveOtherTypes = [](const Argument& argument, ComArguments::References references) {
    return ComArguments({&argument, 1}, references).HaveOtherTypes();
  };
  EXPECT_TRUE(haveOtherTypes(Ref(text), ComArguments::References::AnyType));
  EXPECT_FALSE(haveOtherTypes(Ref(text), ComArguments::References::OwnTypes));
  EXPECT_FALSE(haveOtherTypes(Ref(number), ComArguments::References::AnyType));
  EXPECT_FALSE(haveOtherTypes(Ref(empty), ComArguments::References::AnyType));
  EXPECT_FALSE(haveOtherTypes(Argument("text"), ComArguments::References::AnyType));
}

TEST(AVariable, ReceivesWhatTheComponentWrote) {
  Variant number = 1;
  Variant text = "before";
  const Argument arguments[] = {Ref(number), Argument(5), Ref(text)};
  ComArguments list(arguments);
  *list.Parameters().rgvarg[2].plVal = 7;
  VARIANT& written = *list.Parameters().rgvarg[0].pvarVal;
  VariantClear(&written);
  written.vt = VT_R8;
  written.dblVal = 0.5;
  EXPECT_EQ(list.Take(VARIANT{}), Variant());
  EXPECT_EQ(number, Variant(7));
  EXPECT_EQ(text, Variant(0.5));
}

TEST(AVariable, OfAnObjectReceivesAnotherObject) {
  const auto before = StubComponent::Make({});
  const auto after = StubComponent::Make({});
  Variant object = ObjectFrom(before.Get());
  const Argument arguments[] = {Ref(object)};
  {
    ComArguments list(arguments);
    VARIANT& variable = *list.Parameters().rgvarg[0].pvarVal;
    variable.pdispVal->Release();
    variable.pdispVal = ComPtr<StubComponent>(after).Detach();
    list.Take(VARIANT{});
  }
  EXPECT_EQ(DispatchOf(object.ToObject()).Get(), after.Get());
  EXPECT_EQ(before->references, 1u);
  object = Variant();
  EXPECT_EQ(after->references, 1u);
}

TEST(AVariable, ThatTheComponentLeavesAloneKeepsItsValue) {
  Variant text = "before";
  const auto component = StubComponent::Make({});
  Variant object = ObjectFrom(component.Get());
  const Object before = object.ToObject();
  const Argument arguments[] = {Ref(text), Ref(object)};
  ComArguments list(arguments);
  list.Take(VARIANT{});
  EXPECT_EQ(text, Variant("before"));
  EXPECT_EQ(object.ToObject(), before);
}

TEST(NoVariable, IsChangedWhenOneOfTheValuesCannotBeTaken) {
  Variant number = 1;
  Variant text = "before";
  const Argument arguments[] = {Ref(number), Ref(text)};
  ComArguments list(arguments);
  *list.Parameters().rgvarg[1].plVal = 7;
  VARIANT& written = *list.Parameters().rgvarg[0].pvarVal;
  VariantClear(&written);
  written.vt = VT_ERROR;
  written.scode = E_FAIL;
  const Error error = Raised([&] { list.Take(VARIANT{}); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.DetailOf("argument"), "2");
  EXPECT_EQ(number, Variant(1));
  EXPECT_EQ(text, Variant("before"));
}

TEST(NoVariable, IsChangedWhenTheResultCannotBeTaken) {
  Variant number = 1;
  const Argument arguments[] = {Ref(number)};
  ComArguments list(arguments);
  *list.Parameters().rgvarg[0].plVal = 7;
  VARIANT result{};
  result.vt = VT_ERROR;
  result.scode = E_FAIL;
  EXPECT_EQ(Raised([&] { list.Take(result); }).Number(), 13);
  EXPECT_EQ(number, Variant(1));
}

// Against COM's rules, but some components convert their arguments where they are.
TEST(AnArgument, ThatTheComponentReplacesIsReleasedOnce) {
  const auto component = StubComponent::Make({});
  const Object object = ObjectFrom(component.Get());
  const ULONG before = component->references;
  {
    const Argument arguments[] = {Argument(object), Argument("text")};
    ComArguments list(arguments);
    VARIANT* const passed = list.Parameters().rgvarg;
    EXPECT_EQ(VariantClear(&passed[1]), S_OK);
    EXPECT_EQ(VariantClear(&passed[0]), S_OK);
    passed[0].vt = VT_BSTR;
    passed[0].bstrVal = NewBstr("another");
    list.Take(VARIANT{});
  }
  EXPECT_EQ(component->references, before);
}

TEST(AnObjectAsAnArgument, IsReleasedAfterTheCall) {
  const auto component = StubComponent::Make({});
  const Object object = ObjectFrom(component.Get());
  const ULONG before = component->references;
  {
    const Argument arguments[] = {Argument(object)};
    ComArguments list(arguments);
    EXPECT_EQ(list.Parameters().rgvarg[0].pdispVal, component.Get());
  }
  EXPECT_EQ(component->references, before);
}

}  // namespace
}  // namespace qmx::test
