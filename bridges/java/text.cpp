#include "text.h"

#include "failure.h"

namespace java_bridge {
namespace {

void Append(std::string& text, char32_t code) {
  const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | code >> 6);
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | code >> 12);
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | code >> 18);
    put(0x80 | (code >> 12 & 0x3F));
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

bool IsHigh(jchar unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(jchar unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Returns the character that begins at `at`, and moves `at` past it.
char32_t Next(const jchar* units, std::size_t count, std::size_t& at) {
  const jchar unit = units[at++];
  if (unit == 0) throw Failure{kTypeMismatch, "The text from Java holds a NUL character.", {}};
  if (!IsHigh(unit) && !IsLow(unit)) return unit;
  if (!IsHigh(unit) || at == count || !IsLow(units[at])) {
    throw Failure{kTypeMismatch, "The text from Java holds half of a surrogate pair.", {}};
  }
  const char32_t low = units[at++];
  return 0x10000 + ((char32_t{unit} - 0xD800) << 10) + (low - 0xDC00);
}

// Returns the code at `at`, and moves `at` past it.
char32_t NextCode(std::string_view text, std::size_t& at) {
  const auto invalid = [] { return Failure{kTypeMismatch, "The text for Java is no UTF-8.", {}}; };
  const auto first = static_cast<unsigned char>(text[at++]);
  if (first < 0x80) return first;
  const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
  if (first < 0xC2 || first > 0xF4 || text.size() - at < more) throw invalid();
  char32_t code = first & (0x3Fu >> more);
  for (std::size_t i = 0; i < more; ++i) {
    const auto next = static_cast<unsigned char>(text[at++]);
    if ((next & 0xC0) != 0x80) throw invalid();
    code = code << 6 | (next & 0x3Fu);
  }
  static constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
  if (code < kSmallest[more] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) throw invalid();
  return code;
}

}  // namespace

void ToUtf8(const jchar* units, std::size_t count, std::string& text) {
  text.resize(count);
  std::size_t at = 0;
  for (; at < count && units[at] > 0 && units[at] < 0x80; ++at) text[at] = static_cast<char>(units[at]);
  if (at == count) return;
  text.resize(at);
  while (at < count) Append(text, Next(units, count, at));
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t code = NextCode(text, at);
    if (code < 0x10000) {
      units += static_cast<char16_t>(code);
    } else {
      units += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    }
  }
  return units;
}

}  // namespace java_bridge
