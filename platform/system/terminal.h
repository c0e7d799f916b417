// A terminal whose last lines are redrawn in place, with the escape sequences of ANSI terminals.
#pragma once

#include <string_view>

namespace qmx {

bool IsTerminal(int descriptor);

// Returns whether lines can be redrawn: the descriptor is a terminal that follows these sequences. On a POSIX system
// $TERM is set and not "dumb".
bool IsLiveTerminal(int descriptor);

// Returns whether this process is in the terminal's foreground.
bool IsInForeground(int descriptor);

int TerminalWidth(int descriptor);  // in columns; 80 if it is not known

inline constexpr std::string_view kClearLine = "\r\x1b[K";

// Returns how many rows a line takes on the terminal. A terminal that became narrower wraps lines that were drawn
// before.
constexpr int RowsTaken(int lineWidth, int terminalWidth) {
  return lineWidth <= terminalWidth ? 1 : (lineWidth + terminalWidth - 1) / terminalWidth;
}

}  // namespace qmx
