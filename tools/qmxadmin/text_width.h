// The width of UTF-8 texts on a terminal, whatever the locale.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

int TextWidth(std::string_view text);  // in columns

// Returns the text if it fits, and otherwise its beginning and "…".
std::string CutToWidth(std::string_view text, int width);

// Replaces every control character by a blank, so that the text stays on one line and sends no command to a terminal.
std::string Printable(std::string_view text);

}  // namespace qmx
