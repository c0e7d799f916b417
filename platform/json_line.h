// A JSON object or array on one line, written member by member.
//
// Does not use a JSON library, because its values allocate memory when they are destroyed, which would end a run that
// is short of memory. This class raises bad_alloc only when it grows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qmx {

class JsonLine {
 public:
  static JsonLine Object() { return JsonLine('{', '}'); }
  static JsonLine Array() { return JsonLine('[', ']'); }

  // Members of an object. Invalid UTF-8 becomes U+FFFD.
  JsonLine& Add(const char* name, std::string_view value);
  JsonLine& Add(const char* name, std::int64_t value);
  JsonLine& Add(const char* name, const std::optional<std::int64_t>& value);  // null for none
  JsonLine& AddNull(const char* name);
  JsonLine& Add(const char* name, const JsonLine& value);
  JsonLine& AddJson(const char* name, std::string_view value);  // which is JSON already

  // Elements of an array.
  JsonLine& Add(const JsonLine& element);
  JsonLine& AddJson(std::string_view element);

  // Values by themselves. A number that is none is null.
  static std::string TextValue(std::string_view text);
  static std::string NumberValue(double number);

  std::string Text() const { return text_ + closing_; }
  const std::string& Unclosed() const { return text_; }

 private:
  JsonLine(char opening, char closing) : text_(1, opening), closing_(closing) {}
  void Separate();
  void AddName(std::string_view name);

  std::string text_;
  char closing_;
};

}  // namespace qmx
