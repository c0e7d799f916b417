// The arguments and the answer of a call, as thin views of the host's memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "binding/moment.h"
#include "qmx/component_server.h"

namespace orvan {

class Object;

// One argument. Reading it as a kind that it does not allow is a type mismatch.
class Argument {
 public:
  explicit Argument(const qmx_value& value) : value_(&value) {}

  std::string_view Text() const;        // texts only
  double Number() const;                // numbers, and texts that hold one
  Moment Date() const;                  // date-times, and texts that hold one
  qmx_object* ObjectOrNothing() const;  // objects; null for "no object" and for values without one
  std::string Shown() const;            // any kind, for people

 private:
  friend class KeptValue;
  const qmx_value* value_;
};

// All arguments of one call.
class Arguments {
 public:
  Arguments(qmx_value* const* values, std::size_t count) : values_(values), count_(count) {}

  std::size_t size() const { return count_; }
  Argument operator[](std::size_t index) const { return Argument(*values_[index]); }

 private:
  qmx_value* const* values_;
  std::size_t count_;
};

// The answer. Without a value it is empty.
class Result {
 public:
  explicit Result(qmx_value& value) : value_(&value) {}

  void SetNull() { value_->kind = QMX_NULL; }
  void SetBoolean(bool value) {
    value_->kind = QMX_BOOLEAN;
    value_->as.boolean = value;
  }
  void SetInteger(std::int32_t value) {
    value_->kind = QMX_INT32;
    value_->as.integer = value;
  }
  void SetNumber(double value) {
    value_->kind = QMX_DOUBLE;
    value_->as.number = value;
  }
  void SetDate(const Moment& value) {
    value_->kind = QMX_DATETIME;
    value_->as.seconds = value.Seconds();
  }
  // The text must live until the next call on the same object.
  void SetText(std::string_view value) {
    value_->kind = QMX_TEXT;
    value_->as.text = {value.data(), value.size()};
  }
  // Takes over the caller's reference.
  void SetObject(qmx_object* value) {
    value_->kind = QMX_OBJECT;
    value_->as.object = value;
  }

 private:
  qmx_value* value_;
};

}  // namespace orvan
