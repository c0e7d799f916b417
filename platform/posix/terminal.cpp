#include "platform/system/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/system/environment.h"

namespace qmx {

bool IsTerminal(int descriptor) { return isatty(descriptor) == 1; }

bool IsLiveTerminal(int descriptor) {
  const std::string type = EnvironmentVariable("TERM").value_or("");
  return IsTerminal(descriptor) && !type.empty() && type != "dumb";
}

bool IsInForeground(int descriptor) {
  const pid_t foreground = tcgetpgrp(descriptor);  // none if it is not the terminal of this session
  return foreground <= 0 || foreground == getpgrp();
}

int TerminalWidth(int descriptor) {
  winsize size{};
  return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

}  // namespace qmx
