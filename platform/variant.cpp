#include "platform/variant.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/error.h"
#include "platform/trim.h"

namespace qmx {
namespace {

constexpr const char* kSource = "Values";
constexpr int kSignificantDigits = 15;  // that every double keeps

const char* Name(Variant::Kind kind) {
  switch (kind) {
    case Variant::Kind::Empty:
      return "empty";
    case Variant::Kind::Null:
      return "null";
    case Variant::Kind::Boolean:
      return "a boolean";
    case Variant::Kind::UInt8:
      return "an 8-bit number";
    case Variant::Kind::Int16:
      return "a 16-bit number";
    case Variant::Kind::Int32:
      return "a 32-bit number";
    case Variant::Kind::Double:
      return "a number";
    case Variant::Kind::DateTime:
      return "a date-time";
    case Variant::Kind::Text:
      return "a text";
    case Variant::Kind::Object:
      return "an object";
  }
  return "unknown";
}

[[noreturn]] void RaiseTypeMismatch(const std::string& what, const char* wanted) {
  throw Error(errors::kTypeMismatch, kSource, "Type mismatch: " + what + " is not " + wanted + ".");
}

[[noreturn]] void RaiseTextMismatch(const std::string& text, const char* wanted) {
  constexpr std::size_t kShown = 60;
  std::size_t length = std::min(text.size(), kShown);
  while (length < text.size() && length > 0 && (text[length] & 0xC0) == 0x80) --length;  // never half a character
  RaiseTypeMismatch("the text '" + text.substr(0, length) + (length < text.size() ? "...'" : "'"), wanted);
}

[[noreturn]] void RaiseInvalidUseOfNull(const char* wanted) {
  throw Error(errors::kInvalidUseOfNull, kSource, std::string("Invalid use of null where ") + wanted + " is wanted.");
}

[[noreturn]] void RaiseOverflow(const std::string& what, const char* wanted) {
  throw Error(errors::kOverflow, kSource, "Overflow: " + what + " does not fit into " + wanted + ".");
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

// A finite double in decimal: 0.DIGITS times ten to the power `point`. The digits do not end in a zero; zero has none.
struct Decimal {
  bool negative = false;
  std::string digits;
  int point = 0;
};

Decimal ToDecimal(double value) {
  char buffer[32];
  const double size = std::fabs(value);
  char* end = std::to_chars(buffer, buffer + sizeof buffer, size, std::chars_format::scientific).ptr;
  char* exponent = std::find(buffer, end, 'e');
  if (exponent - buffer > kSignificantDigits + 1) {  // one for the point
    end =
        std::to_chars(buffer, buffer + sizeof buffer, size, std::chars_format::scientific, kSignificantDigits - 1).ptr;
    exponent = std::find(buffer, end, 'e');
  }
  Decimal decimal;
  decimal.negative = std::signbit(value);
  std::remove_copy(buffer, exponent, std::back_inserter(decimal.digits), '.');
  decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
  exponent += exponent[1] == '+' ? 2 : 1;
  std::from_chars(exponent, end, decimal.point);
  ++decimal.point;
  return decimal;
}

// Plain digits for up to 15 places before the point and up to four zeros after it, else the form 1.5E+20.
std::string NumberText(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
  const Decimal decimal = ToDecimal(value);
  if (decimal.digits.empty()) return "0";
  std::string text = decimal.digits;
  const int length = static_cast<int>(text.size());
  if (decimal.point > kSignificantDigits || decimal.point < -3) {
    const int exponent = decimal.point - 1;
    if (length > 1) text.insert(1, 1, '.');
    text += exponent < 0 ? "E-" : "E+";
    if (std::abs(exponent) < 10) text += '0';
    text += std::to_string(std::abs(exponent));
  } else if (decimal.point <= 0) {
    text.insert(0, "0." + std::string(static_cast<std::size_t>(-decimal.point), '0'));
  } else if (decimal.point < length) {
    text.insert(static_cast<std::size_t>(decimal.point), 1, '.');
  } else {
    text.append(static_cast<std::size_t>(decimal.point - length), '0');
  }
  return decimal.negative ? "-" + text : text;
}

// The power of ten of the first digit that is not zero, in a number literal without sign that has such a digit.
std::int64_t PowerOfTen(std::string_view number) {
  const std::size_t e = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, e);
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
  const std::int64_t power = first < point ? point - first - 1 : point - first;
  if (e == number.size()) return power;

  std::string_view digits = number.substr(e + 1);
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / 2;  // outweighs any number of digits
  std::int64_t exponent = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  if (read.ec != std::errc() || exponent > kMost) exponent = kMost;
  return negative ? power - exponent : power + exponent;
}

template <typename Integer>
Integer ToInteger(const Variant& value, const char* wanted) {
  const double rounded = RoundHalfEven(value.ToDouble());
  constexpr double low = std::numeric_limits<Integer>::min();
  constexpr double high = std::numeric_limits<Integer>::max();
  if (!(rounded >= low && rounded <= high)) RaiseOverflow(value.ToText(), wanted);
  return static_cast<Integer>(rounded);
}

DateTime DateTimeFromDays(double days) {
  const DateTime first = DateTime::FromDate(100, 1, 1);
  const DateTime last = DateTime::FromDate(9999, 12, 31).PlusTime(23, 59, 59);
  const double seconds = RoundHalfEven(days * static_cast<double>(DateTime::kSecondsPerDay));
  if (!(seconds >= static_cast<double>(first.Seconds()) && seconds <= static_cast<double>(last.Seconds()))) {
    RaiseOverflow("day number " + NumberText(days), "the years 100 to 9999");
  }
  return DateTime::FromSeconds(static_cast<std::int64_t>(seconds));
}

}  // namespace

bool Variant::ToBoolean() const {
  if (kind_ == Kind::Boolean) return plain_.whole != 0;
  if (const std::string* text = IfText()) {
    if (EqualsIgnoringCase(*text, "true")) return true;
    if (EqualsIgnoringCase(*text, "false")) return false;
  }
  return ToDouble() != 0;
}

std::uint8_t Variant::ToUInt8() const {
  if (kind_ == Kind::UInt8) return static_cast<std::uint8_t>(plain_.whole);
  return ToInteger<std::uint8_t>(*this, Name(Kind::UInt8));
}

std::int16_t Variant::AsInt16() const {
  if (kind_ == Kind::Int16) return static_cast<std::int16_t>(plain_.whole);
  return ToInteger<std::int16_t>(*this, Name(Kind::Int16));
}

std::int32_t Variant::ToInt32() const {
  if (kind_ == Kind::Int32) return static_cast<std::int32_t>(plain_.whole);
  return ToInteger<std::int32_t>(*this, Name(Kind::Int32));
}

double Variant::ToDouble() const {
  switch (GetKind()) {
    case Kind::Empty:
      return 0;
    case Kind::Null:
      RaiseInvalidUseOfNull(Name(Kind::Double));
    case Kind::Boolean:
      return plain_.whole != 0 ? -1 : 0;
    case Kind::UInt8:
    case Kind::Int16:
    case Kind::Int32:
      return static_cast<double>(plain_.whole);
    case Kind::Double:
      return plain_.number;
    case Kind::DateTime:
      return static_cast<double>(plain_.whole) / static_cast<double>(qmx::DateTime::kSecondsPerDay);
    case Kind::Text: {
      const std::optional<double> number = ParseNumber(text_);
      if (!number) RaiseTextMismatch(text_, Name(Kind::Double));
      if (std::isinf(*number)) RaiseOverflow("the text '" + text_ + "'", Name(Kind::Double));
      return *number;
    }
    case Kind::Object:
      break;
  }
  RaiseTypeMismatch(Name(GetKind()), Name(Kind::Double));
}

DateTime Variant::ToDateTime() const {
  if (kind_ == Kind::DateTime) return DateTime::FromSeconds(plain_.whole);
  if (IsNull()) RaiseInvalidUseOfNull(Name(Kind::DateTime));
  if (const std::string* text = IfText()) {
    const std::optional<qmx::DateTime> moment = qmx::DateTime::Parse(Trimmed(*text, " \t"));
    if (!moment) RaiseTextMismatch(*text, "a date-time such as 2026-11-20 14:05:09");
    return *moment;
  }
  if (IfObject()) RaiseTypeMismatch(Name(Kind::Object), Name(Kind::DateTime));
  return DateTimeFromDays(ToDouble());
}

std::string Variant::ToText() const {
  switch (GetKind()) {
    case Kind::Empty:
    case Kind::Null:
      return {};
    case Kind::Boolean:
      return plain_.whole != 0 ? "True" : "False";
    case Kind::UInt8:
    case Kind::Int16:
    case Kind::Int32:
      return std::to_string(plain_.whole);
    case Kind::Double:
      return NumberText(plain_.number);
    case Kind::DateTime:
      return ToDateTime().ToText();
    case Kind::Text:
      return text_;
    case Kind::Object:
      break;
  }
  RaiseTypeMismatch(Name(GetKind()), Name(Kind::Text));
}

Object Variant::ToObject() && {
  if (kind_ == Kind::Object) return std::move(object_);
  return ToObject();
}

Object Variant::ToObject() const& {
  if (const qmx::Object* object = IfObject()) return *object;
  if (IsEmpty() || IsNull()) return {};
  RaiseTypeMismatch(Name(GetKind()), Name(Kind::Object));
}

Variant Variant::ConvertedTo(Kind kind) const {
  if (kind == GetKind() || IsEmpty() || IsNull()) return *this;
  switch (kind) {
    case Kind::Boolean:
      return ToBoolean();
    case Kind::UInt8:
      return ToUInt8();
    case Kind::Int16:
      return ToInt16();
    case Kind::Int32:
      return ToInt32();
    case Kind::Double:
      return ToDouble();
    case Kind::DateTime:
      return ToDateTime();
    case Kind::Text:
      return ToText();
    case Kind::Object:
      return ToObject();
    case Kind::Empty:
    case Kind::Null:
      break;
  }
  RaiseTypeMismatch(Name(GetKind()), Name(kind));
}

bool operator==(const Variant& one, const Variant& other) {
  if (one.kind_ != other.kind_) return false;
  switch (one.kind_) {
    case Variant::Kind::Double:
      return one.plain_.number == other.plain_.number;
    case Variant::Kind::Text:
      return one.text_ == other.text_;
    case Variant::Kind::Object:
      return one.object_ == other.object_;
    default:
      return one.plain_.whole == other.plain_.whole;
  }
}

std::optional<double> ParseNumber(std::string_view text) {
  text = Trimmed(text, " \t");
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || (text.front() != '.' && (text.front() < '0' || text.front() > '9'))) return std::nullopt;
  double value = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return std::nullopt;
  if (problem == std::errc::result_out_of_range) {
    value = PowerOfTen(text) < 0 ? 0 : std::numeric_limits<double>::infinity();
  } else if (problem != std::errc()) {
    return std::nullopt;
  }
  return negative ? -value : value;
}

double RoundHalfEven(double value) { return std::nearbyint(value); }

double RoundDecimals(double value, int digits) {
  if (!std::isfinite(value)) return value;
  Decimal decimal = ToDecimal(value);
  const int kept = decimal.point + digits;
  if (kept > kSignificantDigits) return value;
  if (kept < 0) return 0;

  decimal.digits.resize(std::max(decimal.digits.size(), static_cast<std::size_t>(kept)), '0');
  const std::string dropped = decimal.digits.substr(static_cast<std::size_t>(kept));
  decimal.digits.resize(static_cast<std::size_t>(kept));
  const bool odd = kept > 0 && (decimal.digits.back() - '0') % 2 == 1;
  const bool up = dropped > "5" || (dropped == "5" && odd);
  decimal.digits.insert(0, 1, '0');  // room for a carry
  if (up) {
    std::size_t at = decimal.digits.size() - 1;
    for (; decimal.digits[at] == '9'; --at) decimal.digits[at] = '0';
    ++decimal.digits[at];
  }
  const std::string text = decimal.digits + "e" + std::to_string(-digits);
  double rounded = 0;
  std::from_chars(text.data(), text.data() + text.size(), rounded);
  return decimal.negative && rounded != 0 ? -rounded : rounded;
}

}  // namespace qmx
