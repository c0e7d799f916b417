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

// Also called when a component with a C library of its own ends the process. Then the other threads are gone already.
void EndUnlessMainHasEnded() {
  if (mainHasEnded) return;
  EndLine("exit was called by something other than the program").Write(static_cast<int>(kStatusFailed));
  TerminateProcess(GetCurrentProcess(), kStatusFailed);
}

}  // namespace

void GuardExit() {
  if (std::atexit(EndUnlessMainHasEnded) != 0)
    throw Error(errors::kOutOfMemory, "Memory", "Out of memory: the process's end cannot be guarded.");
}

int EndOfMain(int status) noexcept {
  mainHasEnded = true;
  return status;
}

}  // namespace qmx
