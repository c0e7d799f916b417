#include "tests/support/call_log.h"

#include <algorithm>

namespace qmx::test {

std::vector<std::string> CallLog::StartingWith(std::initializer_list<std::string_view> prefixes) const {
  std::vector<std::string> found;
  for (const std::string& line : lines_) {
    const auto starts = [&](std::string_view prefix) { return line.starts_with(prefix); };
    if (std::ranges::any_of(prefixes, starts)) found.push_back(line);
  }
  return found;
}

std::size_t CallLog::Count(std::string_view line) const {
  return static_cast<std::size_t>(std::ranges::count(lines_, line));
}

std::string Show(const Variant& value, std::string_view object) {
  switch (value.GetKind()) {
    case Variant::Kind::Empty:
      return "empty";
    case Variant::Kind::Null:
      return "null";
    case Variant::Kind::Boolean:
      return value.ToBoolean() ? "true" : "false";
    case Variant::Kind::Text:
      return '"' + value.ToText() + '"';
    case Variant::Kind::Object:
      return value.ToObject() ? std::string(object) : "no object";
    case Variant::Kind::Double: {
      const std::string text = value.ToText();
      return text.find_first_of(".eE") == std::string::npos ? text + ".0" : text;
    }
    default:
      return value.ToText();
  }
}

}  // namespace qmx::test
