// Numbers: ParseNumber as strtod reads, and the conversions of values as exact decimal arithmetic says. The input is a
// text, and its first eight bytes are a number.
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "fuzz/input.h"
#include "fuzz/plain_numbers.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/variant.h"

namespace qmx::fuzz {
namespace {

constexpr double kExact = 9007199254740992;  // whole numbers up to here are exact

void RequireSameNumber(double actual, double expected, const std::string& what) {
  if (std::bit_cast<std::uint64_t>(actual) == std::bit_cast<std::uint64_t>(expected)) return;
  char text[120];
  std::snprintf(text, sizeof text, ": %a, but must be %a", actual, expected);
  Fail(what + text);
}

void ReadsTexts(const std::string& text) {
  const std::optional<double> expected = PlainNumber(text);
  const std::optional<double> read = ParseNumber(text);
  Require(read.has_value() == expected.has_value(), "whether " + Shown(text) + " is a number");
  if (read) RequireSameNumber(*read, *expected, "the number " + Shown(text));
  const std::int32_t raised = NumberRaised([&] { Variant(text).ToDouble(); });
  const std::int32_t mustRaise = !expected ? errors::kTypeMismatch : std::isinf(*expected) ? errors::kOverflow : 0;
  Require(raised == mustRaise, "the error of " + Shown(text) + " as a number");
}

template <typename Integer, typename Convert>
void ConvertsToIntegers(double number, Convert&& convert) {
  constexpr double low = std::numeric_limits<Integer>::min();
  constexpr double high = std::numeric_limits<Integer>::max();
  const bool isSmall = std::fabs(number) < kExact;  // false for NaN
  const double rounded = isSmall ? PlainRound(number) : 0;
  const bool fits = isSmall && rounded >= low && rounded <= high;
  Integer converted = 0;
  const std::int32_t raised = NumberRaised([&] { converted = convert(Variant(number)); });
  Require(raised == (fits ? 0 : errors::kOverflow), "whether " + std::to_string(number) + " fits into an integer");
  if (fits) Require(converted == rounded, "the integer of " + std::to_string(number));
}

void WritesNumbers(double number) {
  if (!std::isfinite(number)) return;
  const std::string text = Variant(number).ToText();
  RequireSame(text, PlainNumberText(number), "a number as text");
  const std::optional<double> reread = ParseNumber(text);
  Require(reread.has_value(), "the text " + text + " is a number");
  // The fifteen digits of the largest numbers are above the largest one.
  if (std::isfinite(*reread)) RequireSame(Variant(*reread).ToText(), text, "a number that was written and read");
  Require(Variant(number).ToBoolean() == (number != 0), "the truth of " + text);
}

void RoundsDecimals(double number, int digits) {
  const double rounded = RoundDecimals(number, digits);
  if (!std::isfinite(number)) return;
  const double expected = PlainRoundDecimals(number, digits);
  if (rounded == expected) return;
  Fail("rounding " + PlainNumberText(number) + " to " + std::to_string(digits) +
       " decimals: " + PlainNumberText(rounded) + ", but must be " + PlainNumberText(expected));
}

// A number counts days.
void CountsDays(double days) {
  constexpr double kFirst = -657434;  // 0100-01-01
  constexpr double kEnd = 2958466;    // 10000-01-01
  DateTime moment;
  const std::int32_t raised = NumberRaised([&] { moment = Variant(days).ToDateTime(); });
  const bool isWithin = days >= kFirst && days < kEnd - 1e-5;
  const bool isOutside = !(days > kFirst - 1e-5 && days < kEnd);
  if (isWithin || isOutside) Require(raised == (isWithin ? 0 : errors::kOverflow), "the day " + std::to_string(days));
  if (raised != 0) return;
  const long double exact = static_cast<long double>(days) * 86400;
  Require(std::fabs(static_cast<double>(exact - static_cast<long double>(moment.Seconds()))) < 0.5001,
          "the second of day " + std::to_string(days));
}

// Every value becomes any other kind or raises one of three errors.
void ConvertsToEveryKind(const Variant& value) {
  using Kind = Variant::Kind;
  constexpr std::array kKinds = {Kind::Boolean, Kind::UInt8,    Kind::Int16, Kind::Int32,
                                 Kind::Double,  Kind::DateTime, Kind::Text,  Kind::Object};
  for (const Kind kind : kKinds) {
    Variant converted;
    const std::int32_t raised = NumberRaised([&] { converted = value.ConvertedTo(kind); });
    const bool isKnown = raised == errors::kTypeMismatch || raised == errors::kOverflow;
    Require(raised == 0 || isKnown, "a conversion raises 6 or 13");
    if (raised != 0) continue;
    const bool staysAsItIs = value.IsEmpty() || value.IsNull();
    Require(converted.GetKind() == (staysAsItIs ? value.GetKind() : kind),
            "a conversion gives the kind that is asked for");
    Require(!converted.IsFinite() || converted.ConvertedTo(kind) == converted, "converting twice changes nothing");
  }
}

// What is no number.
void RefusesOtherKinds() {
  const Variant object = Object();
  Require(NumberRaised([] { Variant::Null().ToDouble(); }) == errors::kInvalidUseOfNull, "null is no number");
  Require(NumberRaised([] { Variant::Null().ToDateTime(); }) == errors::kInvalidUseOfNull, "null is no moment");
  Require(NumberRaised([&] { object.ToText(); }) == errors::kTypeMismatch, "an object is no text");
  Require(Variant().ToDouble() == 0 && Variant::Null().ToText().empty(), "empty is 0, and null has no text");
  Require(NumberRaised([] { Variant(5).ConvertedTo(Variant::Kind::Null); }) == errors::kTypeMismatch, "5 is not null");
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qmx::fuzz::RefusesOtherKinds();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx;
  using namespace qmx::fuzz;
  const std::string text = Input(data, size).Rest();
  Input input(data, size);
  const auto number = input.Next<double>();
  const int digits = static_cast<int>(input.Below(41)) - 20;
  ReadsTexts(text);
  for (const double each : {number, ParseNumber(text).value_or(0)}) {
    ConvertsToIntegers<std::uint8_t>(each, [](const Variant& value) { return value.ToUInt8(); });
    ConvertsToIntegers<std::int16_t>(each, [](const Variant& value) { return value.ToInt16(); });
    ConvertsToIntegers<std::int32_t>(each, [](const Variant& value) { return value.ToInt32(); });
    WritesNumbers(each);
    RoundsDecimals(each, digits);
    CountsDays(each);
    ConvertsToEveryKind(each);
  }
  const auto whole = Input(data, size).Next<std::int32_t>();
  for (const Variant& value :
       {Variant(text), Variant(whole), Variant(static_cast<std::int16_t>(whole)),
        Variant(static_cast<std::uint8_t>(whole)), Variant(whole < 0), Variant(), Variant::Null(), Variant(Object())}) {
    ConvertsToEveryKind(value);
  }
  return 0;
}
