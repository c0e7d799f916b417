#include "binding/values.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>

#include "binding/failure.h"

namespace orvan {
namespace {

[[noreturn]] void Mismatch(const Argument& argument, const char* wanted) {
  throw Failure(QMX_E_TYPE_MISMATCH, "Sandbox",
                "The argument \"" + argument.Shown() + "\" is not " + wanted + ". Pass " + wanted + ".");
}

std::string_view TextOf(const qmx_value& value) { return {value.as.text.data, value.as.text.length}; }

}  // namespace

std::string_view Argument::Text() const {
  if (value_->kind != QMX_TEXT) Mismatch(*this, "a text");
  return TextOf(*value_);
}

double Argument::Number() const {
  switch (value_->kind) {
    case QMX_UINT8:
    case QMX_INT16:
    case QMX_INT32:
      return value_->as.integer;
    case QMX_DOUBLE:
      return value_->as.number;
    case QMX_TEXT: {
      const std::string_view text = TextOf(*value_);
      double number = 0;
      const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
      if (read.ec == std::errc() && read.ptr == text.data() + text.size()) return number;
      break;
    }
    default:
      break;
  }
  Mismatch(*this, "a number");
}

Moment Argument::Date() const {
  if (value_->kind == QMX_DATETIME) return Moment::FromSeconds(value_->as.seconds);
  if (value_->kind == QMX_TEXT) {
    if (const auto moment = Moment::Parse(TextOf(*value_))) return *moment;
  }
  Mismatch(*this, "a date");
}

qmx_object* Argument::ObjectOrNothing() const { return value_->kind == QMX_OBJECT ? value_->as.object : nullptr; }

std::string Argument::Shown() const {
  switch (value_->kind) {
    case QMX_NULL:
      return "null";
    case QMX_BOOLEAN:
      return value_->as.boolean ? "true" : "false";
    case QMX_UINT8:
    case QMX_INT16:
    case QMX_INT32:
      return std::to_string(value_->as.integer);
    case QMX_DOUBLE: {
      char text[32];
      std::snprintf(text, sizeof text, "%.15g", value_->as.number);
      return text;
    }
    case QMX_DATETIME:
      return Moment::FromSeconds(value_->as.seconds).Text();
    case QMX_TEXT:
      return std::string(TextOf(*value_));
    case QMX_OBJECT:
      return value_->as.object ? "an object" : "no object";
    default:
      return "";
  }
}

}  // namespace orvan
