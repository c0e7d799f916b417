#include "platform/system/exit_guard.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "platform/error.h"
#include "platform/system/end_at_once.h"
#include "platform/system/end_line.h"

namespace qmx {
namespace {

constexpr int kStatusFailed = 2;

std::atomic<bool> mainHasEnded = false;
std::atomic<pid_t> guardedProcess = 0;

void EndUnlessMainHasEnded() {
  if (mainHasEnded || getpid() != guardedProcess) return;
  EndLine("exit was called by something other than the program").Write(kStatusFailed);
  EndAtOnce(kStatusFailed);
}

}  // namespace

void GuardExit() {
  guardedProcess = getpid();
  if (std::atexit(EndUnlessMainHasEnded) != 0 || std::at_quick_exit(EndUnlessMainHasEnded) != 0)
    throw Error(errors::kOutOfMemory, "Memory", "Out of memory: the process's end cannot be guarded.");
}

int EndOfMain(int status) noexcept {
  mainHasEnded = true;
  return status;
}

}  // namespace qmx
