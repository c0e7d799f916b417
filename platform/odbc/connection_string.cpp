#include "platform/odbc/connection_string.h"

#include "platform/names.h"
#include "platform/trim.h"

namespace qmx {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// The place of a keyword's value in a text; npos when there is none. `keyword` is where its pair begins.
struct Place {
  std::size_t start = std::string_view::npos;
  std::size_t length = 0;
  std::size_t keyword = 0;
};

std::size_t EndOfValue(std::string_view text, std::size_t start) {
  const std::size_t first = text.find_first_not_of(kBlanks, start);
  if (first == std::string_view::npos || text[first] != '{') return std::min(text.find(';', start), text.size());
  for (std::size_t at = first + 1; at < text.size(); ++at) {
    if (text[at] != '}') continue;
    if (at + 1 < text.size() && text[at + 1] == '}') {
      ++at;
      continue;
    }
    return std::min(text.find(';', at), text.size());
  }
  return text.size();
}

Place Find(std::string_view text, std::string_view keyword) {
  Place last;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t equals = text.find('=', at);
    if (equals == std::string_view::npos) break;
    const std::string_view name = Trimmed(text.substr(at, equals - at), " \t\r\n;");
    const std::size_t end = EndOfValue(text, equals + 1);
    if (SameName(name, keyword)) last = {equals + 1, end - equals - 1, at};
    at = end + 1;
  }
  return last;
}

std::string Braced(std::string_view value) {
  if (value.find_first_of("[]{}(),;?*=!@ ") == std::string_view::npos) return std::string(value);
  std::string braced = "{";
  for (const char c : value) braced.append(c == '}' ? 2 : 1, c);
  return braced + '}';
}

}  // namespace

std::string WithOdbcKeyword(std::string_view text, std::string_view keyword, std::string_view value) {
  std::string result(text);
  const Place place = Find(text, keyword);
  if (place.start != std::string_view::npos) return result.replace(place.start, place.length, Braced(value));
  if (!result.empty() && !result.ends_with(';')) result += ';';
  return result.append(keyword) + '=' + Braced(value);
}

std::string WithoutOdbcKeyword(std::string_view text, std::string_view keyword) {
  std::string result(text);
  const Place place = Find(text, keyword);
  if (place.start == std::string_view::npos) return result;
  return result.erase(place.keyword, place.start + place.length + 1 - place.keyword);
}

std::string OdbcKeyword(std::string_view text, std::string_view keyword) {
  const Place place = Find(text, keyword);
  if (place.start == std::string_view::npos) return {};
  const std::string_view value = Trimmed(text.substr(place.start, place.length), kBlanks);
  if (!value.starts_with('{')) return std::string(value);
  std::string plain;
  for (std::size_t at = 1; at + 1 < value.size(); ++at) {
    plain += value[at];
    if (value[at] == '}') ++at;
  }
  return plain;
}

}  // namespace qmx
