#include "platform/run_records/json_line.h"

#include "platform/text_encoding.h"

namespace qmx {

JsonLine& JsonLine::Add(const char* name, std::string_view value) {
  AddName(name);
  AddText(value);
  return *this;
}

JsonLine& JsonLine::Add(const char* name, std::int64_t value) {
  AddName(name);
  text_ += std::to_string(value);
  return *this;
}

JsonLine& JsonLine::Add(const char* name, const std::optional<std::int64_t>& value) {
  return value ? Add(name, *value) : AddNull(name);
}

JsonLine& JsonLine::AddNull(const char* name) {
  AddName(name);
  text_ += "null";
  return *this;
}

JsonLine& JsonLine::Add(const char* name, const JsonLine& value) {
  AddName(name);
  text_ += value.Text();
  return *this;
}

JsonLine& JsonLine::Add(const JsonLine& element) {
  Separate();
  text_ += element.Text();
  return *this;
}

void JsonLine::Separate() {
  if (text_.size() > 1) text_ += ',';
}

void JsonLine::AddName(std::string_view name) {
  Separate();
  AddText(name);
  text_ += ':';
}

void JsonLine::AddText(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  text_ += '"';
  for (const char c : WithReplacements(text)) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      text_ += "\\n";
    } else if (c == '\r') {
      text_ += "\\r";
    } else if (byte < 0x20) {
      text_.append("\\u00").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0x0f]);
    } else {
      if (c == '"' || c == '\\') text_ += '\\';
      text_ += c;
    }
  }
  text_ += '"';
}

}  // namespace qmx
