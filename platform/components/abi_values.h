// Converts values, objects and errors for the C interface of qmx/component_server.h, by its ownership rules.
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

// Whether the receiver of an object owns a reference (a result) or borrows the object (an argument).
enum class Reference { Given, Borrowed };

inline std::string_view TextFromAbi(const char* data, std::size_t length) {
  return data ? std::string_view(data, length) : std::string_view();
}

// Returns a text for display, in an error for example. Invalid UTF-8 becomes U+FFFD.
inline std::string ShownText(const char* data, std::size_t length) {
  return WithReplacements(TextFromAbi(data, length));
}

// Returns the value as a Variant; texts are copied. Raises 13 for an unknown kind and for a text that is not UTF-8 or
// holds a NUL, and 6 for a number that is out of range for its kind.
Variant AnyFromAbi(const qmx_value& value, Reference reference);
inline Variant FromAbi(const qmx_value& value, Reference reference) {
  if (value.kind == QMX_INT32) return value.as.integer;
  if (value.kind == QMX_TEXT && value.as.text.data) {
    const std::string_view text(value.as.text.data, value.as.text.length);
    if (IsPlainAscii(text)) return text;
  }
  return AnyFromAbi(value, reference);
}

// Returns no object for null. An exported object of the program becomes itself again.
Object ObjectFromAbi(qmx_object* object, Reference reference);

// Returns the object for the other side, with a new reference; null for no object. A server's object is passed as its
// own pointer.
qmx_object* GiveObject(const Object& object);

// The arguments of one call to the other side. They borrow the caller's values.
class AbiArguments {
 public:
  explicit AbiArguments(std::span<const Argument> arguments);
  ~AbiArguments();
  AbiArguments(const AbiArguments&) = delete;
  AbiArguments& operator=(const AbiArguments&) = delete;

  qmx_value* const* Pointers() { return pointers_; }

  // Returns the result of a call that succeeded, and writes what it wrote into the variables that were passed by
  // reference. If one of these values cannot be taken, raises its error, changes no variable, and releases the objects
  // among the others.
  Variant Take(const qmx_value& result);

 private:
  static constexpr std::size_t kUsual = 8;
  std::span<const Argument> arguments_;
  std::array<qmx_value, kUsual> values_;
  std::array<qmx_value*, kUsual> usualPointers_;
  std::array<qmx_object*, kUsual> usualLent_;
  std::vector<qmx_value> manyValues_;  // replaces the arrays for unusually many arguments
  std::vector<qmx_value*> manyPointers_;
  std::vector<qmx_object*> manyLent_;
  qmx_value** pointers_;
  qmx_object** lent_;  // objects by argument, null for other values; released after the call
};

// Returns a value for the other side as the result of a call: an object has a new reference, a text is borrowed from
// `value`.
void GiveValue(const Variant& value, qmx_value& out);

inline qmx_error EmptyAbiError() { return {sizeof(qmx_error), 0, nullptr, 0, nullptr, 0, nullptr, 0}; }
// `source` and standard texts replace missing ones. Flaws in its texts become U+FFFD, so that the error is shown.
Error FromAbi(const qmx_error& error, const std::string& source);

// Returns the exception in flight as the other side's error. The texts live until the next call.
qmx_status FailWithCurrentError(qmx_error* error) noexcept;

}  // namespace qmx
