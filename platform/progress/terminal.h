// What is asked of a terminal on which lines are drawn over and over.
#pragma once

#include <string_view>

namespace qmx {

// Whether lines can be drawn there: a terminal that is not a "dumb" one. (No colour is used, so NO_COLOR says nothing.)
bool IsLiveTerminal(int descriptor);

// Whether this process is the one that the terminal's user looks at, and not one in the background.
bool IsInForeground(int descriptor);

int TerminalWidth(int descriptor);  // in columns; 80 where it is not known

inline constexpr std::string_view kClearLine = "\r\x1b[K";

}  // namespace qmx
