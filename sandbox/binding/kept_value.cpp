#include "binding/kept_value.h"

#include <utility>

#include "binding/failure.h"

namespace orvan {

KeptValue::KeptValue(Argument argument) : value_(*argument.value_) {
  if (value_.kind == QMX_OBJECT)
    throw Failure(QMX_E_TYPE_MISMATCH, "Sandbox", "An object was passed where a text or a number is wanted.");
  if (value_.kind != QMX_TEXT) return;
  text_ = argument.Text();
  value_.as.text = {text_.data(), text_.size()};
}

KeptValue& KeptValue::operator=(KeptValue other) noexcept {
  value_ = other.value_;
  text_.swap(other.text_);
  // A short text moves with its owner.
  if (value_.kind == QMX_TEXT) value_.as.text = {text_.data(), text_.size()};
  return *this;
}

}  // namespace orvan
