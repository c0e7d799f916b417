// Whether a text is valid UTF-8 by the table of well-formed byte sequences of the Unicode Standard.
#pragma once

#include <string_view>

namespace qmx::fuzz {

inline bool IsUtf8(std::string_view text) {
  const auto byte = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
  const auto isWithin = [](unsigned value, unsigned low, unsigned high) { return value >= low && value <= high; };
  for (std::size_t at = 0; at < text.size();) {
    const unsigned first = byte(at), second = byte(at + 1);
    std::size_t length = 1;
    bool isRight = first < 0x80;
    if (isWithin(first, 0xC2, 0xDF)) length = 2, isRight = isWithin(second, 0x80, 0xBF);
    if (isWithin(first, 0xE0, 0xEF)) {
      length = 3;
      isRight = isWithin(second, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF);
    }
    if (isWithin(first, 0xF0, 0xF4)) {
      length = 4;
      isRight = isWithin(second, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF);
    }
    for (std::size_t more = 2; more < length; ++more) isRight = isRight && isWithin(byte(at + more), 0x80, 0xBF);
    if (!isRight) return false;
    at += length;
  }
  return true;
}

}  // namespace qmx::fuzz
