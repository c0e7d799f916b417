#include "tools/qmxadmin/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace qmx {
namespace {

constexpr int kUsualWidth = 80;

int WidthOf(int descriptor) {
  const char* const columns = std::getenv("COLUMNS");
  if (const int width = columns ? std::atoi(columns) : 0; width > 0) return width;
  winsize size{};
  const bool known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kUsualWidth;
}

bool WantsColours() {
  const char* const refusal = std::getenv("NO_COLOR");
  const char* const kind = std::getenv("TERM");
  return !(refusal && *refusal) && kind && std::string_view(kind) != "dumb";
}

}  // namespace

Terminal TerminalOf(int descriptor) {
  if (!isatty(descriptor)) return {};
  return {WidthOf(descriptor), WantsColours()};
}

}  // namespace qmx
