#include "platform/system/end_at_once.h"

#include <windows.h>

namespace qmx {

// ExitProcess, which _exit calls, waits for the loader's lock and calls every library. A driver that hangs may hold the
// lock.
void EndAtOnce(int status) noexcept {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  while (true) Sleep(INFINITE);  // is not reached
}

}  // namespace qmx
