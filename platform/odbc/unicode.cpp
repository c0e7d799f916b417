#include "platform/odbc/unicode.h"

#include <utf8.h>

#include <cstdint>
#include <iterator>

#include "platform/error.h"
#include "platform/text_encoding.h"

namespace qmx {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

[[noreturn]] void RaiseNotUtf8(std::size_t position) {
  throw Error(errors::kTypeMismatch, "ODBC",
              "Type mismatch: the text is no valid UTF-8 from byte " + std::to_string(position + 1) + " on.");
}

// Returns the character that begins at `at`, and moves `at` past it.
char32_t NextCharacter(std::string_view text, std::size_t& at) {
  if (static_cast<std::uint8_t>(text[at]) < 0x80) return static_cast<std::uint8_t>(text[at++]);
  auto place = text.begin() + static_cast<std::ptrdiff_t>(at);
  try {
    const char32_t character = utf8::next(place, text.end());
    at = static_cast<std::size_t>(place - text.begin());
    return character;
  } catch (const utf8::exception&) {
    RaiseNotUtf8(at);
  }
}

}  // namespace

void ToWide(std::string_view utf8, WideText& wide) {
  wide.clear();
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t character = NextCharacter(utf8, at);
    if (character < 0x10000) {
      wide += static_cast<SQLWCHAR>(character);
    } else {
      wide += static_cast<SQLWCHAR>(0xD800 + ((character - 0x10000) >> 10));
      wide += static_cast<SQLWCHAR>(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
  }
}

WideText ToWide(std::string_view utf8) {
  WideText wide;
  ToWide(utf8, wide);
  return wide;
}

void RequireUtf8(std::string_view text) {
  if (IsPlainAscii(text)) return;
  for (std::size_t at = 0; at < text.size();) NextCharacter(text, at);
}

std::string FromWide(std::basic_string_view<SQLWCHAR> wide) {
  std::string text;
  text.reserve(wide.size());
  for (std::size_t at = 0; at < wide.size(); ++at) {
    char32_t character = wide[at];
    if (character >= 0xD800 && character < 0xE000) {
      const char32_t second = at + 1 < wide.size() ? wide[at + 1] : 0;
      const bool isPair = character < 0xDC00 && second >= 0xDC00 && second < 0xE000;
      character = isPair ? 0x10000 + ((character - 0xD800) << 10) + (second - 0xDC00) : kReplacement;
      if (isPair) ++at;
    }
    utf8::append(character, std::back_inserter(text));
  }
  return text;
}

}  // namespace qmx
