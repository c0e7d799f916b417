#include "platform/system/exit_guard.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>

#include "platform/error.h"
#include "platform/system/end_line.h"

namespace qmx {
namespace {

constexpr UINT kStatusFailed = 2;

std::atomic<bool> mainHasEnded = false;

void EndUnlessMainHasEnded() {
  if (mainHasEnded) return;
  EndLine("exit was called by something other than the program").Write(static_cast<int>(kStatusFailed));
  TerminateProcess(GetCurrentProcess(), kStatusFailed);
}

// Windows calls it at the end of the process. A component with a C library of its own calls none of this one's exit
// handlers.
void WINAPI EndOfProcess(void*) { EndUnlessMainHasEnded(); }

}  // namespace

void GuardExit() {
  const DWORD slot = FlsAlloc(EndOfProcess);
  static char anything;  // a value must be set for the call to be made
  if (std::atexit(EndUnlessMainHasEnded) != 0 || slot == FLS_OUT_OF_INDEXES || !FlsSetValue(slot, &anything))
    throw Error(errors::kOutOfMemory, "Memory", "Out of memory: the process's end cannot be guarded.");
}

int EndOfMain(int status) noexcept {
  mainHasEnded = true;
  return status;
}

}  // namespace qmx
