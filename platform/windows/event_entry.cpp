#include "platform/windows/event_entry.h"

#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

constexpr std::size_t kMostInOneEntry = 31839;  // characters, which is Windows' limit
constexpr wchar_t kZeroWidthSpace = L'\x200B';

}  // namespace

std::wstring EventEntry(std::string_view text) {
  const std::wstring wide = WideText(text);
  std::wstring entry;
  for (const wchar_t letter : wide) {
    const bool isReplaced = letter == L'%' || (letter >= L'0' && letter <= L'9');
    if (isReplaced && entry.ends_with(L'%')) entry += kZeroWidthSpace;
    entry += letter;
  }
  return entry.substr(0, kMostInOneEntry);
}

}  // namespace qmx
