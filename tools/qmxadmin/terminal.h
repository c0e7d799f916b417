// The terminal of a standard stream.
#pragma once

#include <optional>

namespace qmx {

struct Terminal {
  std::optional<int> width;  // in columns; empty if the stream is not a terminal
  bool colours = false;      // only on a terminal, and only if NO_COLOR is not set
};

// A number in $COLUMNS takes precedence over the terminal's own width.
Terminal TerminalOf(int descriptor);

}  // namespace qmx
