#include "tools/qmxadmin/system/shown_characters.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace qmx {
namespace {

struct Range {
  char32_t first, last;
};

constexpr std::array kControls = {Range{0x00, 0x1F}, Range{0x7F, 0x9F}, Range{0xD800, 0xDFFF}};

// Accents that join the letter before them, and marks of the writing direction.
constexpr std::array kJoined = {Range{0x0300, 0x036F}, Range{0x0483, 0x0489}, Range{0x0591, 0x05BD},
                                Range{0x0610, 0x061A}, Range{0x064B, 0x065F}, Range{0x200B, 0x200F},
                                Range{0x20D0, 0x20F0}, Range{0xFE00, 0xFE0F}, Range{0xFE20, 0xFE2F}};

// East Asian characters and pictures.
constexpr std::array kWide = {Range{0x1100, 0x115F},   Range{0x2E80, 0x303E},   Range{0x3041, 0x33FF},
                              Range{0x3400, 0x4DBF},   Range{0x4E00, 0x9FFF},   Range{0xA000, 0xA4CF},
                              Range{0xAC00, 0xD7A3},   Range{0xF900, 0xFAFF},   Range{0xFE30, 0xFE6F},
                              Range{0xFF00, 0xFF60},   Range{0xFFE0, 0xFFE6},   Range{0x1F300, 0x1F64F},
                              Range{0x1F680, 0x1F6FF}, Range{0x1F900, 0x1F9FF}, Range{0x20000, 0x3FFFD}};

template <std::size_t kSize>
bool IsIn(const std::array<Range, kSize>& ranges, char32_t letter) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [&](const Range& range) { return range.first <= letter && letter <= range.last; });
}

// The bytes of the first character; 1 if they are not UTF-8.
std::size_t LengthOf(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  return std::min(length, text.size());
}

}  // namespace

ShownCharacters::ShownCharacters() = default;

ShownCharacters::~ShownCharacters() = default;

ShownCharacter ShownCharacters::FirstOf(std::string_view text) const {
  const std::size_t bytes = LengthOf(text);
  std::array<wchar_t, 2> units{};
  const int count = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(bytes),
                                        units.data(), static_cast<int>(units.size()));
  if (count == 0) return {};
  const char32_t letter =
      count == 1 ? char32_t{units[0]} : 0x10000 + ((char32_t{units[0]} - 0xD800) << 10) + (char32_t{units[1]} - 0xDC00);
  if (IsIn(kControls, letter)) return {};
  return {bytes, IsIn(kJoined, letter) ? 0 : IsIn(kWide, letter) ? 2 : 1, true};
}

}  // namespace qmx
