#include "platform/com/variant_values.h"

#include <gtest/gtest.h>

#include "platform/com/bstr.h"
#include "platform/com/hresult.h"
#include "platform/com/objects.h"
#include "platform/components.h"
#include "platform/error.h"
#include "tests/platform/com/stub_component.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

// FromVariant of a value whose fields `fill` sets.
template <typename Fill>
Variant From(VARTYPE type, Fill&& fill) {
  OwnedVariant value;
  fill(*value.Get());
  value.Get()->vt = type;
  return FromVariant(value.Value());
}

// The refusal of such a value. It is not cleared, because its type may be nonsense.
template <typename Fill>
std::string Refusal(VARTYPE type, Fill&& fill) {
  VARIANT value;
  VariantInit(&value);
  fill(value);
  value.vt = type;
  const Error error = Raised([&] { FromVariant(value); });
  EXPECT_EQ(error.Number(), 13);
  return error.Description();
}

TEST(AComponentsValue, MayBeEmptyOrNull) {
  EXPECT_EQ(From(VT_EMPTY, [](VARIANT&) {}), Variant());
  EXPECT_EQ(From(VT_NULL, [](VARIANT&) {}), Variant::Null());
}

TEST(AComponentsValue, MayBeABoolean) {
  EXPECT_EQ(From(VT_BOOL, [](VARIANT& v) { v.boolVal = VARIANT_TRUE; }), Variant(true));
  EXPECT_EQ(From(VT_BOOL, [](VARIANT& v) { v.boolVal = 1; }), Variant(true));
  EXPECT_EQ(From(VT_BOOL, [](VARIANT& v) { v.boolVal = VARIANT_FALSE; }), Variant(false));
}

TEST(AComponentsValue, OfASmallWholeNumberIsTheSmallestKindThatHoldsItsType) {
  EXPECT_EQ(From(VT_UI1, [](VARIANT& v) { v.bVal = 255; }), Variant(std::uint8_t{255}));
  EXPECT_EQ(From(VT_I1, [](VARIANT& v) { v.cVal = -128; }), Variant(std::int16_t{-128}));
  EXPECT_EQ(From(VT_I2, [](VARIANT& v) { v.iVal = -32768; }), Variant(std::int16_t{-32768}));
  EXPECT_EQ(From(VT_UI2, [](VARIANT& v) { v.uiVal = 65535; }), Variant(65535));
  EXPECT_EQ(From(VT_I4, [](VARIANT& v) { v.lVal = INT32_MIN; }), Variant(INT32_MIN));
  EXPECT_EQ(From(VT_INT, [](VARIANT& v) { v.intVal = INT32_MAX; }), Variant(INT32_MAX));
}

TEST(AComponentsValue, OfALargeWholeNumberKeepsEachDigit) {
  EXPECT_EQ(From(VT_UI4, [](VARIANT& v) { v.ulVal = 7; }), Variant(7));
  EXPECT_EQ(From(VT_UI4, [](VARIANT& v) { v.ulVal = 4294967295u; }), Variant(4294967295.0));
  EXPECT_EQ(From(VT_UINT, [](VARIANT& v) { v.uintVal = 2147483648u; }), Variant(2147483648.0));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = -7; }), Variant(-7));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = 9007199254740992; }), Variant(9007199254740992.0));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = 9007199254740993; }), Variant("9007199254740993"));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = -9007199254740992; }), Variant(-9007199254740992.0));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = -9007199254740993; }), Variant("-9007199254740993"));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = INT32_MAX; }), Variant(INT32_MAX));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = INT32_MAX + 1LL; }), Variant(2147483648.0));
  EXPECT_EQ(From(VT_I8, [](VARIANT& v) { v.llVal = INT64_MIN; }), Variant("-9223372036854775808"));
  EXPECT_EQ(From(VT_UI8, [](VARIANT& v) { v.ullVal = INT64_MAX; }), Variant("9223372036854775807"));
  EXPECT_EQ(From(VT_UI8, [](VARIANT& v) { v.ullVal = 9223372036854775808U; }), Variant("9223372036854775808"));
  EXPECT_EQ(From(VT_UI8, [](VARIANT& v) { v.ullVal = 7; }), Variant(7));
  EXPECT_EQ(From(VT_UI8, [](VARIANT& v) { v.ullVal = UINT64_MAX; }), Variant("18446744073709551615"));
}

TEST(AComponentsValue, MayBeAFraction) {
  EXPECT_EQ(From(VT_R8, [](VARIANT& v) { v.dblVal = 0.1; }), Variant(0.1));
  EXPECT_EQ(From(VT_R4, [](VARIANT& v) { v.fltVal = 0.5F; }), Variant(0.5));
}

TEST(AComponentsValue, OfADecimalOrACurrencyAmountIsAnExactText) {
  EXPECT_EQ(From(VT_CY, [](VARIANT& v) { v.cyVal.int64 = 1234567890123456789; }), Variant("123456789012345.6789"));
  const Variant decimal = From(VT_DECIMAL, [](VARIANT& v) {
    v.decVal.Hi32 = 0xFFFFFFFF;
    v.decVal.Lo64 = 0xFFFFFFFFFFFFFFFF;
    v.decVal.scale = 3;
    v.decVal.sign = DECIMAL_NEG;
  });
  EXPECT_EQ(decimal, Variant("-79228162514264337593543950.335"));
}

TEST(AComponentsValue, MayBeADateTime) {
  EXPECT_EQ(From(VT_DATE, [](VARIANT& v) { v.date = -1.25; }),
            Variant(DateTime::FromDate(1899, 12, 29).PlusTime(6, 0, 0)));
}

TEST(AComponentsValue, MayBeAText) {
  EXPECT_EQ(From(VT_BSTR, [](VARIANT& v) { v.bstrVal = NewBstr("Z\xC3\xBCrich"); }), Variant("Z\xC3\xBCrich"));
  EXPECT_EQ(From(VT_BSTR, [](VARIANT& v) { v.bstrVal = nullptr; }), Variant(""));
}

TEST(AComponentsValue, MayBeAMissingArgument) {
  EXPECT_EQ(From(VT_ERROR, [](VARIANT& v) { v.scode = DISP_E_PARAMNOTFOUND; }), Variant());
}

TEST(AComponentsValue, OfAnotherErrorIsRefused) {
  EXPECT_EQ(Refusal(VT_ERROR, [](VARIANT& v) { v.scode = E_ACCESSDENIED; }),
            "Type mismatch: the component gave the error value " + DescribeHresult(E_ACCESSDENIED) + ".");
}

TEST(AComponentsValue, MayBeAnObject) {
  const auto component = StubComponent::Make({});
  const Variant dispatch =
      From(VT_DISPATCH, [&](VARIANT& v) { v.pdispVal = ComPtr<StubComponent>(component).Detach(); });
  const Variant unknown = From(VT_UNKNOWN, [&](VARIANT& v) { v.punkVal = ComPtr<StubComponent>(component).Detach(); });
  EXPECT_EQ(DispatchOf(dispatch.ToObject()).Get(), component.Get());
  EXPECT_EQ(dispatch, unknown);
}

TEST(AComponentsValue, MayBeNoObject) {
  EXPECT_EQ(From(VT_DISPATCH, [](VARIANT& v) { v.pdispVal = nullptr; }), Variant(Object()));
  EXPECT_EQ(From(VT_UNKNOWN, [](VARIANT& v) { v.punkVal = nullptr; }), Variant(Object()));
}

TEST(AComponentsValue, OfAnObjectThatCannotBeCalledByNameIsRefused) {
  for (const ComPtr<IUnknown>& object : {ObjectWithoutDispatch(), ObjectThatGivesNothing()}) {
    EXPECT_EQ(Refusal(VT_UNKNOWN, [&](VARIANT& v) { v.punkVal = object.Get(); }),
              "Type mismatch: the component gave an object without IDispatch, which cannot be called by name: " +
                  DescribeHresult(E_NOINTERFACE) + ".");
  }
}

TEST(AComponentsValue, OfAnArrayIsRefused) {
  EXPECT_EQ(Refusal(VT_ARRAY | VT_I4, [](VARIANT&) {}),
            "Type mismatch: the component gave an array (VT_ARRAY|VT_I4). Only single values can be taken.");
  EXPECT_EQ(
      Refusal(VT_BYREF | VT_ARRAY | VT_VARIANT, [](VARIANT& v) { v.byref = &v; }),
      "Type mismatch: the component gave an array (VT_BYREF|VT_ARRAY|VT_VARIANT). Only single values can be taken.");
}

TEST(AComponentsValue, OfAnotherTypeIsRefused) {
  EXPECT_EQ(Refusal(VT_RECORD, [](VARIANT&) {}),
            "Type mismatch: the component gave a value of the unknown type VT_RECORD.");
  EXPECT_EQ(Refusal(77, [](VARIANT&) {}), "Type mismatch: the component gave a value of the unknown type 77.");
  EXPECT_EQ(Refusal(VT_BYREF | 77, [](VARIANT& v) { v.byref = &v; }),
            "Type mismatch: the component gave a value of the unknown type VT_BYREF|77.");
}

TEST(AComponentsReference, GivesTheValueThatItRefersTo) {
  BYTE byte = 255;
  CHAR character = -1;
  USHORT unsignedNumber = 65535;
  ULONG unsignedInteger = 4294967295;
  ULONGLONG unsignedLarge = UINT64_MAX;
  INT plain = -70000;
  UINT unsignedPlain = 2147483648;
  SCODE missing = DISP_E_PARAMNOTFOUND;
  SHORT number = -5;
  LONG integer = 70000;
  LONGLONG large = 9007199254740993;
  FLOAT single = 0.5F;
  DOUBLE fraction = 0.1;
  DATE date = 1.5;
  CY currency{};
  currency.int64 = 5000;
  DECIMAL decimal{};
  decimal.Lo64 = 15;
  decimal.scale = 1;
  VARIANT_BOOL yes = VARIANT_TRUE;
  BSTR text = SysAllocString(L"text");
  const auto component = StubComponent::Make({});
  IDispatch* object = component.Get();
  const auto at = [](VARTYPE type, void* address) {
    VARIANT reference;
    VariantInit(&reference);
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = address;
    return FromVariant(reference);
  };
  EXPECT_EQ(at(VT_UI1, &byte), Variant(std::uint8_t{255}));
  EXPECT_EQ(at(VT_I1, &character), Variant(std::int16_t{-1}));
  EXPECT_EQ(at(VT_I2, &number), Variant(std::int16_t{-5}));
  EXPECT_EQ(at(VT_UI2, &unsignedNumber), Variant(65535));
  EXPECT_EQ(at(VT_UI4, &unsignedInteger), Variant(4294967295.0));
  EXPECT_EQ(at(VT_UI8, &unsignedLarge), Variant("18446744073709551615"));
  EXPECT_EQ(at(VT_INT, &plain), Variant(-70000));
  EXPECT_EQ(at(VT_UINT, &unsignedPlain), Variant(2147483648.0));
  EXPECT_EQ(at(VT_ERROR, &missing), Variant());
  EXPECT_EQ(at(VT_I4, &integer), Variant(70000));
  EXPECT_EQ(at(VT_I8, &large), Variant("9007199254740993"));
  EXPECT_EQ(at(VT_R4, &single), Variant(0.5));
  EXPECT_EQ(at(VT_R8, &fraction), Variant(0.1));
  EXPECT_EQ(at(VT_DATE, &date), Variant(DateTime::FromDate(1899, 12, 31).PlusTime(12, 0, 0)));
  EXPECT_EQ(at(VT_CY, &currency), Variant("0.5"));
  EXPECT_EQ(at(VT_DECIMAL, &decimal), Variant("1.5"));
  EXPECT_EQ(at(VT_BOOL, &yes), Variant(true));
  EXPECT_EQ(at(VT_BSTR, &text), Variant("text"));
  EXPECT_EQ(DispatchOf(at(VT_DISPATCH, &object).ToObject()).Get(), component.Get());
  IUnknown* unknown = component.Get();
  EXPECT_EQ(DispatchOf(at(VT_UNKNOWN, &unknown).ToObject()).Get(), component.Get());
  EXPECT_EQ(component->references, 1u);  // it was borrowed
  SysFreeString(text);
}

TEST(AComponentsReference, ToAVariantGivesItsValue) {
  OwnedVariant inner;
  inner.Get()->vt = VT_BSTR;
  inner.Get()->bstrVal = SysAllocString(L"inner");
  EXPECT_EQ(From(VT_BYREF | VT_VARIANT, [&](VARIANT& v) { v.pvarVal = inner.Get(); }), Variant("inner"));
}

TEST(AComponentsReference, ToAVariantThatIsAReferenceGivesThatOnes) {
  LONG number = 5;
  VARIANT inner;
  VariantInit(&inner);
  inner.vt = VT_BYREF | VT_I4;
  inner.plVal = &number;
  EXPECT_EQ(From(VT_BYREF | VT_VARIANT, [&](VARIANT& v) { v.pvarVal = &inner; }), Variant(5));
}

TEST(AComponentsReference, WithoutEndOrAddressIsRefused) {
  VARIANT endless;
  VariantInit(&endless);
  endless.vt = VT_BYREF | VT_VARIANT;
  endless.pvarVal = &endless;
  EXPECT_EQ(Raised([&] { FromVariant(endless); }).Description(),
            "Type mismatch: the component gave a reference to a reference.");
  EXPECT_EQ(Refusal(VT_BYREF | VT_I4, [](VARIANT&) {}),
            "Type mismatch: the component gave a null reference of type VT_BYREF|VT_I4.");
}

TEST(AValueForAComponent, ComesBackAsItWas) {
  const Variant values[] = {Variant(),
                            Variant::Null(),
                            true,
                            false,
                            std::uint8_t{200},
                            std::int16_t{-7},
                            70000,
                            0.1,
                            DateTime::FromDate(1850, 1, 1).PlusTime(6, 0, 1),
                            "Z\xC3\xBCrich",
                            "",
                            Object()};
  for (const Variant& value : values) {
    OwnedVariant converted;
    ToVariant(value, *converted.Get());
    EXPECT_EQ(FromVariant(converted.Value()), value);
  }
}

TEST(AValueForAComponent, HasTheTypeOfItsKind) {
  const auto typeOf = [](const Variant& value) {
    OwnedVariant converted;
    ToVariant(value, *converted.Get());
    return converted.Value().vt;
  };
  EXPECT_EQ(typeOf({}), VT_EMPTY);
  EXPECT_EQ(typeOf(Variant::Null()), VT_NULL);
  EXPECT_EQ(typeOf(true), VT_BOOL);
  EXPECT_EQ(typeOf(std::uint8_t{1}), VT_UI1);
  EXPECT_EQ(typeOf(std::int16_t{1}), VT_I2);
  EXPECT_EQ(typeOf(1), VT_I4);
  EXPECT_EQ(typeOf(1.0), VT_R8);
  EXPECT_EQ(typeOf(DateTime()), VT_DATE);
  EXPECT_EQ(typeOf("text"), VT_BSTR);
  EXPECT_EQ(typeOf(Object()), VT_DISPATCH);
}

TEST(AValueForAComponent, OfTrueIsMinusOne) {
  OwnedVariant converted;
  ToVariant(true, *converted.Get());
  EXPECT_EQ(converted.Value().boolVal, VARIANT_TRUE);
}

}  // namespace
}  // namespace qmx::test
