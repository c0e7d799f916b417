// What stands at the other end of a standard stream.
#pragma once

#include <optional>

namespace qmx {

struct Terminal {
  std::optional<int> width;  // in columns; none where it is no terminal
  bool colours = false;      // only on a terminal, and where NO_COLOR is not set
};

// $COLUMNS, where it is a number, is wiser than the terminal.
Terminal TerminalOf(int descriptor);

}  // namespace qmx
