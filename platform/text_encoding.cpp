#include "platform/text_encoding.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

#include "platform/error.h"

namespace qmx {

std::size_t FindFlaw(std::string_view text) {
  if (IsPlainAscii(text)) return std::string_view::npos;
  const auto notUtf8 = static_cast<std::size_t>(utf8::find_invalid(text.begin(), text.end()) - text.begin());
  const std::size_t flaw = std::min(notUtf8, text.find('\0'));
  return flaw < text.size() ? flaw : std::string_view::npos;
}

void RequireFlawless(std::string_view text, const char* source) {
  const std::size_t flaw = FindFlaw(text);
  if (flaw == std::string_view::npos) return;
  const std::string byte = std::to_string(flaw + 1);
  throw Error(errors::kTypeMismatch, source,
              text[flaw] == '\0' ? "Type mismatch: the text holds a NUL character at byte " + byte + "."
                                 : "Type mismatch: the text is no valid UTF-8 from byte " + byte + " on.");
}

std::string WithReplacements(std::string_view text) {
  if (FindFlaw(text) == std::string_view::npos) return std::string(text);
  std::string valid;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
  std::string shown;
  for (const char character : valid) {
    if (character == '\0') {
      shown += "\xEF\xBF\xBD";
    } else {
      shown += character;
    }
  }
  return shown;
}

}  // namespace qmx
