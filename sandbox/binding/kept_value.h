// A copy of an argument's value, which outlives the call. For objects use a Ref or a ForeignObject.
#pragma once

#include <string>

#include "binding/values.h"

namespace orvan {

class KeptValue {
 public:
  KeptValue() = default;
  explicit KeptValue(Argument argument);
  KeptValue(const KeptValue& other) : KeptValue(other.View()) {}
  KeptValue& operator=(KeptValue other) noexcept;

  Argument View() const { return Argument(value_); }  // valid until this value changes

 private:
  qmx_value value_{};
  std::string text_;
};

}  // namespace orvan
