// A terminal whose last line is redrawn in place.
#pragma once

#include <string_view>

namespace qmx {

// Whether lines can be drawn there: a terminal that is not "dumb". (There are no colours, so NO_COLOR does not matter.)
bool IsLiveTerminal(int descriptor);

// Whether this process is in the terminal's foreground.
bool IsInForeground(int descriptor);

int TerminalWidth(int descriptor);  // in columns; 80 if it is unknown

inline constexpr std::string_view kClearLine = "\r\x1b[K";

}  // namespace qmx
