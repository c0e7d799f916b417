#include "tools/qmxadmin/text_width.h"

#include "tools/qmxadmin/system/shown_characters.h"

namespace qmx {
int TextWidth(std::string_view text) {
  const ShownCharacters characters;
  int width = 0;
  for (; !text.empty();) {
    const ShownCharacter first = characters.FirstOf(text);
    width += first.width;
    text.remove_prefix(first.bytes);
  }
  return width;
}

std::string CutToWidth(std::string_view text, int width) {
  if (TextWidth(text) <= width) return std::string(text);
  if (width <= 0) return {};
  const ShownCharacters characters;
  std::size_t kept = 0;
  for (int room = width - 1; kept < text.size();) {
    const ShownCharacter next = characters.FirstOf(text.substr(kept));
    room -= next.width;
    if (room < 0) break;
    kept += next.bytes;
  }
  return std::string(text.substr(0, kept)) + "…";
}

std::string Printable(std::string_view text) {
  const ShownCharacters characters;
  std::string printable;
  while (!text.empty()) {
    const ShownCharacter first = characters.FirstOf(text);
    if (first.printable) {
      printable += text.substr(0, first.bytes);
    } else {
      printable += ' ';
    }
    text.remove_prefix(first.bytes);
  }
  return printable;
}

}  // namespace qmx
