#include "tools/qmxadmin/terminal.h"

#include <unistd.h>

#include <cstdlib>

#include "platform/system/terminal.h"

namespace qmx {
namespace {

int WidthOf(int descriptor) {
  const char* const columns = std::getenv("COLUMNS");
  const int width = columns ? std::atoi(columns) : 0;
  return width > 0 ? width : TerminalWidth(descriptor);
}

bool AreColoursRefused() {
  const char* const refusal = std::getenv("NO_COLOR");
  return refusal && *refusal;
}

}  // namespace

Terminal TerminalOf(int descriptor) {
  if (!isatty(descriptor)) return {};
  return {WidthOf(descriptor), IsLiveTerminal(descriptor) && !AreColoursRefused()};
}

}  // namespace qmx
