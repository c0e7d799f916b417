// Values: every conversion in both directions, what it refuses and with which number.
#include "platform/variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/components.h"
#include "platform/error.h"

namespace qmx::test {
namespace {

using Kind = Variant::Kind;

class Nothing : public Dispatch {
 public:
  Variant Invoke(const Member&, std::span<const Argument>) override { return {}; }
};

Object SomeObject() { return Object(std::make_shared<Nothing>()); }

std::int32_t NumberRaisedBy(const std::function<void()>& work) {
  try {
    work();
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

std::string DescriptionRaisedBy(const std::function<void()>& work) {
  try {
    work();
  } catch (const Error& error) {
    return error.Description();
  }
  return {};
}

TEST(Variant, KnowsItsKind) {
  EXPECT_EQ(Variant().GetKind(), Kind::Empty);
  EXPECT_EQ(Variant::Null().GetKind(), Kind::Null);
  EXPECT_EQ(Variant(true).GetKind(), Kind::Boolean);
  EXPECT_EQ(Variant(std::uint8_t{1}).GetKind(), Kind::UInt8);
  EXPECT_EQ(Variant(std::int16_t{1}).GetKind(), Kind::Int16);
  EXPECT_EQ(Variant(1).GetKind(), Kind::Int32);
  EXPECT_EQ(Variant(1.0).GetKind(), Kind::Double);
  EXPECT_EQ(Variant(DateTime()).GetKind(), Kind::DateTime);
  EXPECT_EQ(Variant("1").GetKind(), Kind::Text);
  EXPECT_EQ(Variant(SomeObject()).GetKind(), Kind::Object);
}

TEST(Variant, EqualsTheSameValueOfTheSameKindOnly) {
  EXPECT_EQ(Variant("a"), Variant(std::string("a")));
  EXPECT_NE(Variant(1), Variant(1.0));
  EXPECT_NE(Variant(), Variant::Null());
  EXPECT_NE(Variant(), Variant(0));
  EXPECT_EQ(Variant::Null(), Variant::Null());
}

TEST(Variant, TakesAnyValueWhateverItHeldBefore) {
  const std::string longText(100, 'x');
  const Variant values[] = {Variant(), Variant::Null(), true,  std::uint8_t{200}, std::int16_t{-5}, 70000,
                            2.5,       DateTime(),      "abc", Variant(longText), SomeObject()};
  for (const Variant& before : values) {
    for (const Variant& after : values) {
      Variant copied = before;
      copied = after;
      EXPECT_EQ(copied, after);
      Variant source = after;
      Variant moved = before;
      moved = std::move(source);
      EXPECT_EQ(moved, after);
      source = before;  // what was moved from takes a value again
      EXPECT_EQ(source, before);
    }
    Variant itself = before;
    const Variant& sameAgain = itself;
    itself = sameAgain;
    EXPECT_EQ(itself, before);
    itself.Clear();
    EXPECT_EQ(itself, Variant());
  }
}

TEST(Variant, HoldsAnObjectAsLongAsACopyOfItDoes) {
  const auto target = std::make_shared<Nothing>();
  Variant one = Object(target);
  Variant other = one;
  EXPECT_EQ(target.use_count(), 3);
  one = 1;
  other = std::move(one);
  EXPECT_EQ(target.use_count(), 1);
}

TEST(Variant, EmptyIsZeroInEveryKind) {
  const Variant empty;
  EXPECT_FALSE(empty.ToBoolean());
  EXPECT_EQ(empty.ToUInt8(), 0);
  EXPECT_EQ(empty.ToInt16(), 0);
  EXPECT_EQ(empty.ToInt32(), 0);
  EXPECT_EQ(empty.ToDouble(), 0.0);
  EXPECT_EQ(empty.ToDateTime(), DateTime());
  EXPECT_EQ(empty.ToText(), "");
  EXPECT_FALSE(empty.ToObject());
}

TEST(Variant, NullIsInvalidUseOfNullExceptAsTextAndAsNoObject) {
  const Variant null = Variant::Null();
  EXPECT_EQ(null.ToText(), "");
  EXPECT_FALSE(null.ToObject());
  EXPECT_EQ(NumberRaisedBy([&] { null.ToBoolean(); }), 94);
  EXPECT_EQ(NumberRaisedBy([&] { null.ToUInt8(); }), 94);
  EXPECT_EQ(NumberRaisedBy([&] { null.ToInt16(); }), 94);
  EXPECT_EQ(NumberRaisedBy([&] { null.ToInt32(); }), 94);
  EXPECT_EQ(NumberRaisedBy([&] { null.ToDouble(); }), 94);
  EXPECT_EQ(NumberRaisedBy([&] { null.ToDateTime(); }), 94);
}

TEST(Variant, RoundsHalvesToEvenOnTheWayToAnInteger) {
  EXPECT_EQ(Variant(0.5).ToInt32(), 0);
  EXPECT_EQ(Variant(1.5).ToInt32(), 2);
  EXPECT_EQ(Variant(2.5).ToInt16(), 2);
  EXPECT_EQ(Variant(3.5).ToUInt8(), 4);
  EXPECT_EQ(Variant(-0.5).ToInt32(), 0);
  EXPECT_EQ(Variant(-1.5).ToInt32(), -2);
  EXPECT_EQ(Variant(2.5000001).ToInt32(), 3);
  EXPECT_EQ(Variant("2.5").ToInt32(), 2);
  EXPECT_EQ(Variant("17.5").ToInt32(), 18);
}

TEST(Variant, OutOfAnIntegersRangeIsAnOverflow) {
  EXPECT_EQ(Variant(255.4).ToUInt8(), 255);
  EXPECT_EQ(NumberRaisedBy([] { Variant(255.5).ToUInt8(); }), 6);
  EXPECT_EQ(NumberRaisedBy([] { Variant(-1).ToUInt8(); }), 6);
  EXPECT_EQ(Variant(-32768).ToInt16(), -32768);
  EXPECT_EQ(Variant(32767).ToInt16(), 32767);
  EXPECT_EQ(NumberRaisedBy([] { Variant(32768).ToInt16(); }), 6);
  EXPECT_EQ(NumberRaisedBy([] { Variant("-32769").ToInt16(); }), 6);
  EXPECT_EQ(Variant(2147483647.5 - 0.1).ToInt32(), 2147483647);
  EXPECT_EQ(NumberRaisedBy([] { Variant(2147483647.5).ToInt32(); }), 6);
  EXPECT_EQ(NumberRaisedBy([] { Variant(std::numeric_limits<double>::infinity()).ToInt32(); }), 6);
  EXPECT_EQ(NumberRaisedBy([] { Variant(std::numeric_limits<double>::quiet_NaN()).ToInt32(); }), 6);
  EXPECT_EQ(NumberRaisedBy([] { Variant("1e400").ToDouble(); }), 6);
  EXPECT_EQ(DescriptionRaisedBy([] { Variant(70000).ToInt16(); }),
            "Overflow: 70000 does not fit into a 16-bit number.");
}

TEST(Variant, TrueIsMinusOneAsANumberAndANameAsText) {
  EXPECT_EQ(Variant(true).ToInt16(), -1);
  EXPECT_EQ(Variant(true).ToInt32(), -1);
  EXPECT_EQ(Variant(true).ToDouble(), -1.0);
  EXPECT_EQ(Variant(false).ToInt32(), 0);
  EXPECT_EQ(NumberRaisedBy([] { Variant(true).ToUInt8(); }), 6);
  EXPECT_EQ(Variant(true).ToText(), "True");
  EXPECT_EQ(Variant(false).ToText(), "False");
}

TEST(Variant, AnythingButZeroIsTrue) {
  EXPECT_TRUE(Variant(0.1).ToBoolean());
  EXPECT_FALSE(Variant(0).ToBoolean());
  EXPECT_TRUE(Variant("-3").ToBoolean());
  EXPECT_FALSE(Variant("0.0").ToBoolean());
  EXPECT_TRUE(Variant("TRUE").ToBoolean());
  EXPECT_FALSE(Variant("False").ToBoolean());
  EXPECT_TRUE(Variant(DateTime::FromSeconds(1)).ToBoolean());
  EXPECT_EQ(NumberRaisedBy([] { Variant("yes").ToBoolean(); }), 13);
}

TEST(Variant, TextBecomesANumberOnlyAsAWholeNumberLiteral) {
  EXPECT_EQ(Variant(" 42 ").ToInt32(), 42);
  EXPECT_EQ(Variant("+1.5e2").ToDouble(), 150.0);
  for (const char* text : {"", " ", "abc", "12abc", "1,5", "0x10", "1 2", "--1", "inf", "nan", "1e", "."}) {
    EXPECT_EQ(NumberRaisedBy([&] { Variant(text).ToInt32(); }), 13) << text;
  }
}

TEST(Variant, NamesTheTextThatIsNoNumberAndCutsALongOneBetweenCharacters) {
  EXPECT_EQ(DescriptionRaisedBy([] { Variant("12abc").ToInt32(); }),
            "Type mismatch: the text '12abc' is not a number.");
  const std::string tooLong = std::string(59, 'x') + "\xC3\xA4" + "end";
  EXPECT_EQ(DescriptionRaisedBy([&] { Variant(tooLong).ToInt32(); }),
            "Type mismatch: the text '" + std::string(59, 'x') + "...' is not a number.");
}

TEST(Variant, NumbersAsTextAreAsShortAsTheyCanBe) {
  EXPECT_EQ(Variant(std::uint8_t{255}).ToText(), "255");
  EXPECT_EQ(Variant(std::int16_t{-7}).ToText(), "-7");
  EXPECT_EQ(Variant(2147483647).ToText(), "2147483647");
  EXPECT_EQ(Variant(0.1).ToText(), "0.1");
  EXPECT_EQ(Variant(-12.50).ToText(), "-12.5");
  EXPECT_EQ(Variant(100.0).ToText(), "100");
  EXPECT_EQ(Variant(0.0).ToText(), "0");
  EXPECT_EQ(Variant(-0.0).ToText(), "0");
}

TEST(Variant, NumbersAsTextHaveAtMostFifteenDigits) {
  EXPECT_EQ(Variant(1.0 / 3).ToText(), "0.333333333333333");
  EXPECT_EQ(Variant(2.0 / 3).ToText(), "0.666666666666667");
  EXPECT_EQ(Variant(0.1 + 0.2).ToText(), "0.3");
  EXPECT_EQ(Variant(1234567890.123456789).ToText(), "1234567890.12346");
  EXPECT_EQ(Variant(0.99999999999999989).ToText(), "1");
}

TEST(Variant, VeryLargeAndVerySmallNumbersAsTextHaveAnExponent) {
  EXPECT_EQ(Variant(999999999999999.0).ToText(), "999999999999999");
  EXPECT_EQ(Variant(1e15).ToText(), "1E+15");
  EXPECT_EQ(Variant(-1.25e20).ToText(), "-1.25E+20");
  EXPECT_EQ(Variant(0.0001).ToText(), "0.0001");
  EXPECT_EQ(Variant(0.00001).ToText(), "1E-05");
  EXPECT_EQ(Variant(1.5e-100).ToText(), "1.5E-100");
}

TEST(Variant, NumbersThatAreNoneHaveATextThatIsNoNumber) {
  EXPECT_EQ(Variant(std::numeric_limits<double>::quiet_NaN()).ToText(), "NaN");
  EXPECT_EQ(Variant(-std::numeric_limits<double>::infinity()).ToText(), "-Infinity");
  EXPECT_FALSE(ParseNumber("NaN"));
  EXPECT_FALSE(ParseNumber("-Infinity"));
}

TEST(Variant, ANumberAsDateTimeCountsDays) {
  EXPECT_EQ(Variant(1).ToDateTime().ToText(), "1899-12-31");
  EXPECT_EQ(Variant(46346.5).ToDateTime().ToText(), "2026-11-20 12:00:00");
  EXPECT_EQ(Variant(-1.25).ToDateTime().ToText(), "1899-12-28 18:00:00");
  EXPECT_EQ(Variant(1.0 / 86400 * 1.4).ToDateTime().Seconds(), 1);
  EXPECT_EQ(NumberRaisedBy([] { Variant(3000000).ToDateTime(); }), 6);
  EXPECT_EQ(NumberRaisedBy([] { Variant(-700000).ToDateTime(); }), 6);
  EXPECT_EQ(NumberRaisedBy([] { Variant(std::numeric_limits<double>::quiet_NaN()).ToDateTime(); }), 6);
}

TEST(Variant, ADateTimeAsNumberCountsDays) {
  EXPECT_EQ(Variant(DateTime::FromDate(2026, 11, 20).PlusTime(6, 0, 0)).ToDouble(), 46346.25);
  EXPECT_EQ(Variant(DateTime::FromDate(2026, 11, 20)).ToInt32(), 46346);
  EXPECT_EQ(NumberRaisedBy([] { Variant(DateTime::FromDate(2026, 11, 20)).ToInt16(); }), 6);
}

TEST(Variant, ATextAsDateTimeIsTheCanonicalForm) {
  EXPECT_EQ(Variant(" 2026-11-20 14:05:09 ").ToDateTime(), DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9));
  EXPECT_EQ(Variant(DateTime::FromDate(2026, 11, 20)).ToText(), "2026-11-20");
  EXPECT_EQ(NumberRaisedBy([] { Variant("tomorrow").ToDateTime(); }), 13);
  EXPECT_EQ(NumberRaisedBy([] { Variant("").ToDateTime(); }), 13);
}

TEST(Variant, AnObjectConvertsToNothingElse) {
  const Object object = SomeObject();
  EXPECT_EQ(Variant(object).ToObject(), object);
  EXPECT_EQ(NumberRaisedBy([&] { Variant(object).ToText(); }), 13);
  EXPECT_EQ(NumberRaisedBy([&] { Variant(object).ToInt32(); }), 13);
  EXPECT_EQ(NumberRaisedBy([&] { Variant(object).ToDateTime(); }), 13);
  EXPECT_EQ(NumberRaisedBy([&] { Variant(object).ToBoolean(); }), 13);
  EXPECT_EQ(NumberRaisedBy([] { Variant(1).ToObject(); }), 13);
  EXPECT_EQ(NumberRaisedBy([] { Variant("x").ToObject(); }), 13);
}

TEST(Variant, ConvertsToAKindAsItsConversionsDo) {
  EXPECT_EQ(Variant("2.5").ConvertedTo(Kind::Int32), Variant(2));
  EXPECT_EQ(Variant("2.5").ConvertedTo(Kind::Int16), Variant(std::int16_t{2}));
  EXPECT_EQ(Variant(1.4).ConvertedTo(Kind::UInt8), Variant(std::uint8_t{1}));
  EXPECT_EQ(Variant(1).ConvertedTo(Kind::Boolean), Variant(true));
  EXPECT_EQ(Variant(7).ConvertedTo(Kind::Double), Variant(7.0));
  EXPECT_EQ(Variant(7).ConvertedTo(Kind::Text), Variant("7"));
  EXPECT_EQ(Variant("2026-11-20").ConvertedTo(Kind::DateTime), Variant(DateTime::FromDate(2026, 11, 20)));
  const Object object = SomeObject();
  EXPECT_EQ(Variant(object).ConvertedTo(Kind::Object), Variant(object));
  EXPECT_EQ(NumberRaisedBy([] { Variant("x").ConvertedTo(Kind::Object); }), 13);
  EXPECT_EQ(NumberRaisedBy([] { Variant("x").ConvertedTo(Kind::Int32); }), 13);
  EXPECT_EQ(NumberRaisedBy([] { Variant("x").ConvertedTo(Kind::Null); }), 13);
}

TEST(Variant, ConvertedToAKindNullAndEmptyStayWhatTheyAre) {
  EXPECT_EQ(Variant::Null().ConvertedTo(Kind::Int32), Variant::Null());
  EXPECT_EQ(Variant().ConvertedTo(Kind::DateTime), Variant());
}

TEST(ParseNumber, ReadsWholeLiterals) {
  EXPECT_EQ(ParseNumber("17"), 17.0);
  EXPECT_EQ(ParseNumber(" -1.5E-3 "), -0.0015);
  EXPECT_EQ(ParseNumber("+.5"), 0.5);
  EXPECT_EQ(ParseNumber("5."), 5.0);
  EXPECT_EQ(ParseNumber("007"), 7.0);
}

TEST(ParseNumber, ReadsNothingElse) {
  for (const char* text :
       {"", "  ", "abc", "1a", "+", "-", ".", "1e", "1e+", "e5", "+-1", "0x1F", "inf", "NAN", "1.2.3"}) {
    EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
  }
}

TEST(ParseNumber, GivesInfinityPastTheLargestDoubleAndZeroBelowTheSmallest) {
  EXPECT_EQ(ParseNumber("1e999"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(ParseNumber("-1e999"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(ParseNumber(std::string(400, '9')), std::numeric_limits<double>::infinity());
  EXPECT_EQ(ParseNumber("1e-999"), 0.0);
  EXPECT_EQ(ParseNumber("0." + std::string(400, '0') + "1"), 0.0);
}

TEST(ParseNumber, WeighsTheExponentAgainstTheDigits) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::string zeros(400, '0');
  EXPECT_EQ(ParseNumber("1" + zeros + "e-10"), kInfinity);
  EXPECT_EQ(ParseNumber("-1" + zeros + "E-10"), -kInfinity);
  EXPECT_EQ(ParseNumber("1" + zeros + "e-400"), 1.0);
  EXPECT_EQ(ParseNumber("0." + zeros + "1e10"), 0.0);
  EXPECT_EQ(ParseNumber("0." + zeros + "1e+10"), 0.0);
  EXPECT_EQ(ParseNumber("." + zeros + "1e401"), 1.0);
  EXPECT_EQ(ParseNumber("." + zeros + "1e800"), kInfinity);
  EXPECT_EQ(ParseNumber("12.5e-99999999999999999999"), 0.0);
  EXPECT_EQ(ParseNumber("12.5e99999999999999999999"), kInfinity);
  EXPECT_EQ(ParseNumber("0e999"), 0.0);
}

TEST(RoundDecimals, RoundsWhatNeedsMoreDigitsThanADoubleHoldsForCertain) {
  EXPECT_EQ(RoundDecimals(649561783.99999988, 0), 649561784.0);
  EXPECT_EQ(RoundDecimals(649561783.99999988, 2), 649561784.0);
  EXPECT_EQ(RoundDecimals(-649561783.99999988, 0), -649561784.0);
  EXPECT_EQ(RoundDecimals(0.30000000000000004, 2), 0.3);
  EXPECT_EQ(RoundDecimals(649561783.99999988, 7), 649561783.99999988);  // finer than the digits that are certain
}

TEST(RoundDecimals, RoundsHalvesToEvenJudgedOnTheDecimalValueAsWritten) {
  EXPECT_EQ(RoundDecimals(2.125, 2), 2.12);
  EXPECT_EQ(RoundDecimals(2.375, 2), 2.38);
  EXPECT_EQ(RoundDecimals(2.675, 2), 2.68);
  EXPECT_EQ(RoundDecimals(1.005, 2), 1.0);
  EXPECT_EQ(RoundDecimals(1.015, 2), 1.02);
  EXPECT_EQ(RoundDecimals(-2.675, 2), -2.68);
  EXPECT_EQ(RoundDecimals(8.345, 2), 8.34);
  EXPECT_EQ(RoundDecimals(8.3450001, 2), 8.35);
}

TEST(RoundDecimals, CarriesIntoHigherDigits) {
  EXPECT_EQ(RoundDecimals(9.999, 2), 10.0);
  EXPECT_EQ(RoundDecimals(0.996, 2), 1.0);
  EXPECT_EQ(RoundDecimals(0.006, 2), 0.01);
  EXPECT_EQ(RoundDecimals(0.005, 2), 0.0);
  EXPECT_EQ(RoundDecimals(0.0005, 2), 0.0);
  EXPECT_FALSE(std::signbit(RoundDecimals(-0.001, 2)));
}

TEST(RoundDecimals, LeavesWhatIsShortEnoughAlone) {
  EXPECT_EQ(RoundDecimals(2.12, 2), 2.12);
  EXPECT_EQ(RoundDecimals(1e300, 2), 1e300);
  EXPECT_EQ(RoundDecimals(12345678.25, 2), 12345678.25);
  EXPECT_EQ(RoundDecimals(0.0, 2), 0.0);
  EXPECT_TRUE(std::isnan(RoundDecimals(std::numeric_limits<double>::quiet_NaN(), 2)));
}

}  // namespace
}  // namespace qmx::test
