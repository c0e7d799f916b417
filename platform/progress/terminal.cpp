#include "platform/progress/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace qmx {

bool IsLiveTerminal(int descriptor) {
  const char* const type = std::getenv("TERM");
  return isatty(descriptor) == 1 && type && *type && std::string_view(type) != "dumb";
}

bool IsInForeground(int descriptor) {
  const pid_t foreground = tcgetpgrp(descriptor);  // none if it is not the terminal of this session
  return foreground <= 0 || foreground == getpgrp();
}

int TerminalWidth(int descriptor) {
  winsize size{};
  return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

int RowsTaken(int lineWidth, int terminalWidth) {
  return lineWidth <= terminalWidth ? 1 : (lineWidth + terminalWidth - 1) / terminalWidth;
}

}  // namespace qmx
