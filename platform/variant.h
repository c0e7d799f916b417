// A value of one of the automation types, with the classic conversions in one place.
//
// Texts are UTF-8. Conversions are explicit and raise errors: to an integer rounds half to even and is error 6 out of
// range; null to anything but text is error 94; a text that is one number literal (sign, digits, point, exponent,
// blanks around) becomes a number, any other text is error 13. Empty is 0, false, "" and the zero date-time. Null as a
// text is "". A number as text is the shortest form that reads back as the same number, at most 15 digits, always with
// ".". True is -1 as a number.
#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/datetime.h"
#include "platform/object.h"

namespace qmx {

class Variant {
 public:
  enum class Kind { Empty, Null, Boolean, UInt8, Int16, Int32, Double, DateTime, Text, Object };

  Variant() {}  // empty
  static Variant Null() { return Variant(Kind::Null, Plain()); }

  // Values convert to a Variant by themselves: component calls are written with plain literals.
  Variant(bool value) : Variant(Kind::Boolean, {.whole = value}) {}
  Variant(std::uint8_t value) : Variant(Kind::UInt8, {.whole = value}) {}
  Variant(std::int16_t value) : Variant(Kind::Int16, {.whole = value}) {}
  Variant(std::int32_t value) : Variant(Kind::Int32, {.whole = value}) {}
  Variant(double value) : Variant(Kind::Double, {.number = value}) {}
  Variant(DateTime value) : Variant(Kind::DateTime, {.whole = value.Seconds()}) {}
  Variant(std::string value) : kind_(Kind::Text), text_(std::move(value)) {}
  Variant(std::string_view value) : kind_(Kind::Text), text_(value) {}
  Variant(const char* value) : kind_(Kind::Text), text_(value) {}
  Variant(Object value) : kind_(Kind::Object), object_(std::move(value)) {}

  Variant(const Variant& other) { Become(other); }
  Variant(Variant&& other) noexcept { Become(std::move(other)); }
  Variant& operator=(const Variant& other) { return Assign(other); }
  Variant& operator=(Variant&& other) noexcept { return Assign(std::move(other)); }
  ~Variant() { Clear(); }

  Kind GetKind() const { return kind_; }
  bool IsEmpty() const { return GetKind() == Kind::Empty; }
  bool IsNull() const { return GetKind() == Kind::Null; }
  bool IsFinite() const { return kind_ != Kind::Double || std::isfinite(plain_.number); }

  // The value itself if it is of that kind, else null; borrowed from this value.
  const std::string* IfText() const { return kind_ == Kind::Text ? &text_ : nullptr; }
  const Object* IfObject() const { return kind_ == Kind::Object ? &object_ : nullptr; }

  bool ToBoolean() const;
  std::uint8_t ToUInt8() const;
  std::int16_t ToInt16() const {
    const bool isUsual = kind_ == Kind::Int32 || kind_ == Kind::UInt8;  // most components' numbers, and flags
    const bool fits = isUsual && std::in_range<std::int16_t>(plain_.whole);
    return fits ? static_cast<std::int16_t>(plain_.whole) : AsInt16();
  }
  std::int32_t ToInt32() const;
  double ToDouble() const;
  DateTime ToDateTime() const;    // a number counts days from the zero date-time, fractions to the nearest second
  std::string ToText() const;     // an object is error 13
  qmx::Object ToObject() const&;  // empty and null are no object; anything else but an object is error 13
  qmx::Object ToObject() &&;      // the same, without a further reference

  // Converts this value to `kind`. Null and empty stay what they are. Raises as the conversions above do.
  Variant ConvertedTo(Kind kind) const;

  // Makes the value empty.
  void Clear() {
    if (kind_ == Kind::Text) std::destroy_at(&text_);
    if (kind_ == Kind::Object) std::destroy_at(&object_);
    kind_ = Kind::Empty;
    std::construct_at(&plain_);
  }

  // The same kind and the same value; 1 and 1.0 differ.
  friend bool operator==(const Variant& one, const Variant& other);

 private:
  // Numbers, and date-times as their seconds. A std::variant would be slower: a value is visited several times on its
  // way into a row.
  union Plain {
    std::int64_t whole = 0;
    double number;
  };

  Variant(Kind kind, Plain plain) : kind_(kind), plain_(plain) {}

  std::int16_t AsInt16() const;

  template <typename Other>
  void Become(Other&& other) {  // of an empty value
    if (other.kind_ == Kind::Text) {
      std::construct_at(&text_, std::forward<Other>(other).text_);
    } else if (other.kind_ == Kind::Object) {
      std::construct_at(&object_, std::forward<Other>(other).object_);
    } else {
      plain_ = other.plain_;
    }
    kind_ = other.kind_;
  }

  template <typename Other>
  Variant& Assign(Other&& other) {
    if (kind_ == Kind::Text && other.kind_ == Kind::Text) {
      text_ = std::forward<Other>(other).text_;  // keeps its memory
    } else if (this != &other) {
      Clear();
      Become(std::forward<Other>(other));
    }
    return *this;
  }

  Kind kind_ = Kind::Empty;
  union {
    Plain plain_ = {};
    std::string text_;
    qmx::Object object_;
  };
};

// Parses a text that is one number literal; infinity past the largest double. Nothing for any other text, including
// "inf" and "nan".
std::optional<double> ParseNumber(std::string_view text);

// Rounds to the nearest whole number, halves to even, for every conversion to an integer.
double RoundHalfEven(double value);

// Rounds to `digits` decimals, halves to even, by the decimal text of the value: 2.125 gives 2.12, 2.375 gives 2.38.
double RoundDecimals(double value, int digits);

}  // namespace qmx
