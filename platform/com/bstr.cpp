#include "platform/com/bstr.h"

#include <algorithm>
#include <limits>
#include <new>

#include "platform/error.h"
#include "platform/text_encoding.h"

namespace qmx {
namespace {

int Length(std::size_t size) {
  if (size <= static_cast<std::size_t>(std::numeric_limits<int>::max())) return static_cast<int>(size);
  throw Error(errors::kOutOfMemory, "COM", "A text of " + std::to_string(size) + " characters is too long for COM.");
}

bool IsHigh(wchar_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(wchar_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Returns the place of the first unit from `start` on that is no text; npos when there is none.
std::size_t FindFlaw(std::wstring_view text, std::size_t start = 0) {
  for (std::size_t i = start; i < text.size(); ++i) {
    if (text[i] == L'\0' || IsLow(text[i])) return i;
    if (!IsHigh(text[i])) continue;
    if (i + 1 == text.size() || !IsLow(text[i + 1])) return i;
    ++i;
  }
  return std::wstring_view::npos;
}

// True when it copied the text, because all of it is ASCII and none NUL.
bool CopyPlainAscii(std::wstring_view text, std::string& copy) {
  unsigned flaws = 0;
  copy.resize(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned unit = text[i];
    flaws |= unit | (unit - 1U);  // a NUL sets all bits
    copy[i] = static_cast<char>(unit);
  }
  return flaws < 0x80;
}

std::string Converted(std::wstring_view text) {
  if (text.empty()) return {};
  const int length = Length(text.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string converted(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, converted.data(), size, nullptr, nullptr);
  return converted;
}

}  // namespace

std::wstring Wide(std::string_view text) {
  if (IsPlainAscii(text)) return std::wstring(text.begin(), text.end());
  const int length = Length(text.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
  return wide;
}

std::string Utf8(std::wstring_view text) {
  std::string copy;
  if (CopyPlainAscii(text, copy)) return copy;
  const std::size_t flaw = FindFlaw(text);
  if (flaw == std::wstring_view::npos) return Converted(text);
  const std::string character = std::to_string(flaw + 1);
  throw Error(errors::kTypeMismatch, "COM",
              text[flaw] == L'\0' ? "Type mismatch: the text holds a NUL character at character " + character + "."
                                  : "Type mismatch: the text is no valid UTF-16 from character " + character + " on.");
}

std::string Utf8WithReplacements(std::wstring_view text) {
  constexpr wchar_t kReplacement = 0xFFFD;
  std::wstring valid(text);
  std::size_t flaw = FindFlaw(valid);
  while (flaw != std::wstring::npos) {
    valid[flaw] = kReplacement;
    flaw = FindFlaw(valid, flaw + 1);
  }
  return Converted(valid);
}

BSTR NewBstr(std::string_view text) {
  const std::wstring wide = Wide(text);
  const BSTR made = SysAllocStringLen(wide.data(), static_cast<UINT>(Length(wide.size())));
  if (!made) throw std::bad_alloc();
  return made;
}

}  // namespace qmx
