// Checks and repairs UTF-8 texts.
//
// A flaw is a byte that is not valid UTF-8, or a NUL, which no local column stores reliably. Nearly all texts are
// ASCII, so checks of many rows begin with IsPlainAscii.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace qmx {

// True when all characters are ASCII and none is NUL. Looks at eight bytes at a time.
inline bool IsPlainAscii(std::string_view text) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  const char* const data = text.data();
  const std::size_t size = text.size();
  // Sets the high bit of a byte that has it, and of the lowest byte that is zero.
  const auto flawsOf = [](std::uint64_t bytes) { return (bytes - kOnes) | bytes; };
  const auto eightAt = [data](std::size_t at) {
    std::uint64_t bytes;
    std::memcpy(&bytes, data + at, sizeof bytes);
    return bytes;
  };
  if (size >= 8) {
    std::uint64_t flaws = flawsOf(eightAt(size - 8));
    for (std::size_t at = 0; at + 8 < size; at += 8) flaws |= flawsOf(eightAt(at));
    return (flaws & kHighBits) == 0;
  }
  if (size >= 4) {
    std::uint32_t first, last;
    std::memcpy(&first, data, sizeof first);
    std::memcpy(&last, data + size - 4, sizeof last);
    return (flawsOf(std::uint64_t{first} << 32 | last) & kHighBits) == 0;
  }
  for (const char character : text) {
    if (static_cast<unsigned char>(character - 1) >= 0x7F) return false;
  }
  return true;
}

// Returns the place of the first flaw, counted from 0; npos when there is none.
std::size_t FindFlaw(std::string_view text);

// Raises 13 when the text has a flaw. The error names the byte, counted from 1.
void RequireFlawless(std::string_view text, const char* source);

// Returns the text with U+FFFD in place of each flaw.
std::string WithReplacements(std::string_view text);

}  // namespace qmx
