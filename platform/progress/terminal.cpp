#include "platform/progress/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace qmx {

bool IsLiveTerminal(int descriptor) {
  const char* const type = std::getenv("TERM");
  return isatty(descriptor) == 1 && type && *type && std::string_view(type) != "dumb";
}

bool IsInForeground(int descriptor) {
  const pid_t foreground = tcgetpgrp(descriptor);  // none where it is not the terminal of this session
  return foreground <= 0 || foreground == getpgrp();
}

int TerminalWidth(int descriptor) {
  winsize size{};
  return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

void WriteToDescriptor(int descriptor, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace qmx
