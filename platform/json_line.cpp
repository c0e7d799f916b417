#include "platform/json_line.h"

#include <array>
#include <charconv>
#include <cmath>

#include "platform/text_encoding.h"

namespace qmx {

JsonLine& JsonLine::Add(const char* name, std::string_view value) { return AddJson(name, TextValue(value)); }

JsonLine& JsonLine::Add(const char* name, std::int64_t value) { return AddJson(name, std::to_string(value)); }

JsonLine& JsonLine::Add(const char* name, const std::optional<std::int64_t>& value) {
  return value ? Add(name, *value) : AddNull(name);
}

JsonLine& JsonLine::AddNull(const char* name) { return AddJson(name, "null"); }

JsonLine& JsonLine::Add(const char* name, const JsonLine& value) { return AddJson(name, value.Text()); }

JsonLine& JsonLine::AddJson(const char* name, std::string_view value) {
  AddName(name);
  text_ += value;
  return *this;
}

JsonLine& JsonLine::Add(const JsonLine& element) { return AddJson(element.Text()); }

JsonLine& JsonLine::AddJson(std::string_view element) {
  Separate();
  text_ += element;
  return *this;
}

void JsonLine::Separate() {
  if (text_.size() > 1) text_ += ',';
}

void JsonLine::AddName(std::string_view name) {
  Separate();
  text_ += TextValue(name) + ':';
}

std::string JsonLine::TextValue(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string value = "\"";
  for (const char c : WithReplacements(text)) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      value += "\\n";
    } else if (c == '\r') {
      value += "\\r";
    } else if (c == '\t') {
      value += "\\t";
    } else if (byte < 0x20) {
      value.append("\\u00").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0x0f]);
    } else {
      if (c == '"' || c == '\\') value += '\\';
      value += c;
    }
  }
  return value + '"';
}

std::string JsonLine::NumberValue(double number) {
  if (!std::isfinite(number)) return "null";
  std::array<char, 32> digits{};
  char* const begin = digits.data();
  std::string value(begin, std::to_chars(begin, begin + digits.size(), number).ptr);
  if (value.find_first_of(".e") == std::string::npos) value += ".0";
  return value;
}

}  // namespace qmx
