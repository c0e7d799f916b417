// A value of one of the automation types, with the classic conversions in one place.
//
// Texts are UTF-8. Conversions are explicit and raise errors: to an integer rounds half to even and is error 6 out of
// range; null to anything but text is error 94; a text becomes a number when it is a whole number literal (sign,
// digits, point, exponent, blanks around), else error 13. Empty is 0, false, "" and the zero date-time; null as text is
// "". A number as text is the shortest form that reads back, at most 15 digits, always with ".". True is -1 as a
// number.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/datetime.h"
#include "platform/object.h"

namespace qmx {

class Variant {
 public:
  enum class Kind { Empty, Null, Boolean, UInt8, Int16, Int32, Double, DateTime, Text, Object };  // in storage order

  Variant() = default;  // empty
  static Variant Null() { return Variant(Storage(NullValue{})); }

  // Values convert to a Variant by themselves: component calls are written with plain literals.
  Variant(bool value) : value_(value) {}
  Variant(std::uint8_t value) : value_(value) {}
  Variant(std::int16_t value) : value_(value) {}
  Variant(std::int32_t value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(DateTime value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(Object value) : value_(std::move(value)) {}

  Kind GetKind() const { return static_cast<Kind>(value_.index()); }
  bool IsEmpty() const { return GetKind() == Kind::Empty; }
  bool IsNull() const { return GetKind() == Kind::Null; }
  bool IsNumber() const { return GetKind() >= Kind::Boolean && GetKind() <= Kind::Double; }

  // The value itself where it is of that kind, else null; borrowed from this value.
  const std::string* IfText() const { return std::get_if<std::string>(&value_); }
  const Object* IfObject() const { return std::get_if<qmx::Object>(&value_); }

  bool ToBoolean() const;
  std::uint8_t ToUInt8() const;
  std::int16_t ToInt16() const;
  std::int32_t ToInt32() const;
  double ToDouble() const;
  DateTime ToDateTime() const;    // a number counts days from the zero date-time, fractions to the nearest second
  std::string ToText() const;     // an object is error 13
  qmx::Object ToObject() const&;  // empty and null are no object; anything else but an object is error 13
  qmx::Object ToObject() &&;      // the same, without a further reference

  // This value as one of `kind`; null and empty stay what they are. Raises as the conversions above do.
  Variant ConvertedTo(Kind kind) const;

  // The same kind and the same value; 1 and 1.0 differ.
  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  struct NullValue {
    friend bool operator==(NullValue, NullValue) = default;
  };
  using Storage = std::variant<std::monostate, NullValue, bool, std::uint8_t, std::int16_t, std::int32_t, double,
                               qmx::DateTime, std::string, qmx::Object>;
  explicit Variant(Storage value) : value_(std::move(value)) {}
  Storage value_;
};

// The number that a whole number literal stands for, infinity where it is past the largest double; nothing for any
// other text, "inf" and "nan" among them.
std::optional<double> ParseNumber(std::string_view text);

// Nearest whole number, halves to even, for every conversion to an integer.
double RoundHalfEven(double value);

// To `digits` decimals, halves to even, judged on the decimal value as it is written: 2.125 gives 2.12, 2.375
// gives 2.38.
double RoundDecimals(double value, int digits);

}  // namespace qmx
