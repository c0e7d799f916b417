#include "tools/qmxadmin/terminal.h"

#include <cstdlib>

#include "platform/system/environment.h"
#include "platform/system/terminal.h"

namespace qmx {
namespace {

int WidthOf(int descriptor) {
  const int width = std::atoi(EnvironmentVariable("COLUMNS").value_or("").c_str());
  return width > 0 ? width : TerminalWidth(descriptor);
}

bool AreColoursRefused() { return !EnvironmentVariable("NO_COLOR").value_or("").empty(); }

}  // namespace

Terminal TerminalOf(int descriptor) {
  if (!IsTerminal(descriptor)) return {};
  return {WidthOf(descriptor), IsLiveTerminal(descriptor) && !AreColoursRefused()};
}

}  // namespace qmx
