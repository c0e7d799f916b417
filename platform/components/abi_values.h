// Values, objects and errors on their way over the C interface of qmx/component_server.h, under its ownership rules.
#pragma once

#include <qmx/component_server.h>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/components.h"
#include "platform/error.h"
#include "platform/text_encoding.h"

namespace qmx {

// Whether the receiver of an object was given a reference with it (a result) or only sees it (an argument).
enum class Reference { Given, Borrowed };

inline std::string_view TextFromAbi(const char* data, std::size_t length) {
  return data ? std::string_view(data, length) : std::string_view();
}

// A text that is only shown, in an error for example: what is no UTF-8 becomes U+FFFD.
inline std::string ShownText(const char* data, std::size_t length) {
  return WithReplacements(TextFromAbi(data, length));
}

// The value as one of ours; texts are copied. Raises 13 for a kind that nobody knows and for a text that is no UTF-8 or
// holds a NUL, 6 for a number outside its kind.
Variant AnyFromAbi(const qmx_value& value, Reference reference);
inline Variant FromAbi(const qmx_value& value, Reference reference) {
  if (value.kind == QMX_INT32) return value.as.integer;
  if (value.kind == QMX_TEXT && value.as.text.data) {
    const std::string_view text(value.as.text.data, value.as.text.length);
    if (IsPlainAscii(text)) return text;
  }
  return AnyFromAbi(value, reference);
}

// No object for null. An object of ours becomes itself again.
Object ObjectFromAbi(qmx_object* object, Reference reference);

// The object for the other side, with a reference for it; null for no object. An object of a server is its own pointer.
qmx_object* GiveObject(const Object& object);

// The arguments of one call to the other side. They borrow the caller's values, which outlive this.
class AbiArguments {
 public:
  explicit AbiArguments(std::span<const Argument> arguments);
  ~AbiArguments();
  AbiArguments(const AbiArguments&) = delete;
  AbiArguments& operator=(const AbiArguments&) = delete;

  qmx_value* const* Pointers() { return pointers_; }
  void WriteBack();  // into the variables that were passed by reference

 private:
  static constexpr std::size_t kUsual = 8;
  std::span<const Argument> arguments_;
  std::array<qmx_value, kUsual> values_;
  std::array<qmx_value*, kUsual> usualPointers_;
  std::vector<qmx_value> manyValues_;  // instead of the arrays, when there are more arguments than usual
  std::vector<qmx_value*> manyPointers_;
  qmx_value** pointers_;
  std::vector<qmx_object*> lent_;  // by argument, where there are objects: to be released after the call
};

// A value for the other side as the result of a call: an object comes with a reference, a text is borrowed from
// `value`.
void GiveValue(const Variant& value, qmx_value& out);

inline qmx_error EmptyAbiError() { return {sizeof(qmx_error), 0, nullptr, 0, nullptr, 0, nullptr, 0}; }
// `source` and stock texts where it has none. Flaws in its texts become U+FFFD: an error about an error helps nobody.
Error FromAbi(const qmx_error& error, const std::string& source);

// The exception in flight as the other side's error; the texts live until the next one.
qmx_status FailWithCurrentError(qmx_error* error) noexcept;

}  // namespace qmx
