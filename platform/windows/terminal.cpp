#include "platform/system/terminal.h"

#include <io.h>
#include <windows.h>

namespace qmx {
namespace {

HANDLE HandleOf(int descriptor) { return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)); }

}  // namespace

// A null device is one of the C library's terminals, so the handle is asked.
bool IsTerminal(int descriptor) {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(descriptor), &mode) != FALSE;
}

bool IsLiveTerminal(int descriptor) {
  const HANDLE console = HandleOf(descriptor);
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) &&
         SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

// Consoles have no background.
bool IsInForeground(int) { return true; }

int TerminalWidth(int descriptor) {
  CONSOLE_SCREEN_BUFFER_INFO state{};
  const int width =
      GetConsoleScreenBufferInfo(HandleOf(descriptor), &state) ? state.srWindow.Right - state.srWindow.Left + 1 : 0;
  return width > 0 ? width : 80;
}

}  // namespace qmx
