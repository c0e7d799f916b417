#include "platform/odbc/unicode.h"

#include <cstdint>

#include "platform/error.h"

namespace qmx {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

[[noreturn]] void RaiseNotUtf8(std::size_t position) {
  throw Error(errors::kTypeMismatch, "ODBC",
              "Type mismatch: the text is no valid UTF-8 from byte " + std::to_string(position + 1) + " on.");
}

// The character that begins at `at`, which is moved behind it.
char32_t NextCharacter(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const std::uint8_t first = byte(at);
  if (first < 0x80) return text[at++] & 0x7F;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || at + length > text.size()) RaiseNotUtf8(at);
  char32_t character = first & (0x7Fu >> length);
  for (std::size_t index = at + 1; index < at + length; ++index) {
    if ((byte(index) & 0xC0) != 0x80) RaiseNotUtf8(at);
    character = (character << 6) | (byte(index) & 0x3Fu);
  }
  const bool tooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
  if (tooLong || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) RaiseNotUtf8(at);
  at += length;
  return character;
}

void AppendUtf8(char32_t character, std::string& text) {
  const auto add = [&](char32_t bits) { text += static_cast<char>(bits); };
  if (character < 0x80) return add(character);
  if (character < 0x800) {
    add(0xC0 | (character >> 6));
  } else {
    if (character < 0x10000) {
      add(0xE0 | (character >> 12));
    } else {
      add(0xF0 | (character >> 18));
      add(0x80 | ((character >> 12) & 0x3F));
    }
    add(0x80 | ((character >> 6) & 0x3F));
  }
  add(0x80 | (character & 0x3F));
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
    AppendUtf8(character, text);
  }
  return text;
}

}  // namespace qmx
