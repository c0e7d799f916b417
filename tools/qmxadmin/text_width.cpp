#include "tools/qmxadmin/text_width.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace qmx {
namespace {

// wcwidth knows only the characters of the thread's locale.
class InUtf8 {
 public:
  InUtf8() : before_(uselocale(Utf8())) {}
  ~InUtf8() { uselocale(before_); }
  InUtf8(const InUtf8&) = delete;
  InUtf8& operator=(const InUtf8&) = delete;

 private:
  static locale_t Utf8() {
    static const locale_t kUtf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return kUtf8;
  }
  locale_t before_;
};

// The first character of a text. A byte that is not UTF-8 counts as one character, and so does a control character.
struct Character {
  std::size_t bytes = 1;
  int width = 1;
  bool printable = false;
};

Character FirstOf(std::string_view text) {
  std::mbstate_t state{};
  wchar_t letter = 0;
  const std::size_t bytes = std::mbrtowc(&letter, text.data(), text.size(), &state);
  if (bytes == 0 || bytes > text.size()) return {};
  const int width = wcwidth(letter);
  return {bytes, std::max(width, 0), width >= 0};
}

}  // namespace

int TextWidth(std::string_view text) {
  const InUtf8 locale;
  int width = 0;
  for (; !text.empty();) {
    const Character first = FirstOf(text);
    width += first.width;
    text.remove_prefix(first.bytes);
  }
  return width;
}

std::string CutToWidth(std::string_view text, int width) {
  if (TextWidth(text) <= width) return std::string(text);
  if (width <= 0) return {};
  const InUtf8 locale;
  std::size_t kept = 0;
  for (int room = width - 1; kept < text.size();) {
    const Character next = FirstOf(text.substr(kept));
    room -= next.width;
    if (room < 0) break;
    kept += next.bytes;
  }
  return std::string(text.substr(0, kept)) + "…";
}

std::string Printable(std::string_view text) {
  const InUtf8 locale;
  std::string printable;
  while (!text.empty()) {
    const Character first = FirstOf(text);
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
