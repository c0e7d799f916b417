#include "tools/qmxadmin/system/shown_characters.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace qmx {
namespace {

locale_t Utf8() {
  static const locale_t kUtf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return kUtf8;
}

}  // namespace

// wcwidth knows only the characters of the thread's locale.
ShownCharacters::ShownCharacters() : before_(uselocale(Utf8())) {}

ShownCharacters::~ShownCharacters() { uselocale(static_cast<locale_t>(before_)); }

ShownCharacter ShownCharacters::FirstOf(std::string_view text) const {
  std::mbstate_t state{};
  wchar_t letter = 0;
  const std::size_t bytes = std::mbrtowc(&letter, text.data(), text.size(), &state);
  if (bytes == 0 || bytes > text.size()) return {};
  const int width = wcwidth(letter);
  return {bytes, std::max(width, 0), width >= 0};
}

}  // namespace qmx
