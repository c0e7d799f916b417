// How much room a UTF-8 text takes on a terminal, whatever the locale.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

int TextWidth(std::string_view text);  // in columns

// The text where it fits, else its beginning and "…".
std::string CutToWidth(std::string_view text, int width);

// On one line, and without anything that a terminal would take for a command.
std::string Printable(std::string_view text);

}  // namespace qmx
