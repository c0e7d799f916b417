#include "platform/system/exit_guard.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>

#include "platform/error.h"
#include "platform/system/end_at_once.h"
#include "platform/system/end_line.h"

extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress();  // not in mingw's headers

namespace qmx {
namespace {

constexpr int kStatusFailed = 2;

std::atomic<bool> mainHasEnded = false;

void EndUnlessMainHasEnded() {
  if (mainHasEnded) return;
  EndLine("exit was called by something other than the program").Write(kStatusFailed);
  EndAtOnce(kStatusFailed);
}

// A component with a C library of its own calls none of this one's exit handlers. But before Windows ends the process,
// it clears the slots of the thread that asked for the end. So each thread has a value in this slot.
std::atomic<DWORD> slot = FLS_OUT_OF_INDEXES;
char ofMain, ofAnotherThread;

// Windows calls it for a thread that has a value, when that thread or the process ends.
void WINAPI ClearSlot(void* value) {
  if (value == &ofMain || RtlDllShutdownInProgress()) EndUnlessMainHasEnded();
}

// Windows calls it in each thread that begins.
void NTAPI BeginThread(void*, DWORD reason, void*) {
  if (reason == DLL_THREAD_ATTACH && slot != FLS_OUT_OF_INDEXES) FlsSetValue(slot, &ofAnotherThread);
}
[[gnu::section(".CRT$XLF"), gnu::used]] const PIMAGE_TLS_CALLBACK beginThread = BeginThread;

// Windows calls it after the program's handlers, in a thread in which it then ends the process itself.
BOOL WINAPI LeaveToWindows(DWORD) {
  FlsSetValue(slot, nullptr);
  return FALSE;
}

}  // namespace

void GuardExit() {
  slot = FlsAlloc(ClearSlot);
  SetConsoleCtrlHandler(LeaveToWindows, TRUE);  // the first one is called last
  if (std::atexit(EndUnlessMainHasEnded) != 0 || slot == FLS_OUT_OF_INDEXES || !FlsSetValue(slot, &ofMain))
    throw Error(errors::kOutOfMemory, "Memory", "Out of memory: the process's end cannot be guarded.");
}

int EndOfMain(int status) noexcept {
  mainHasEnded = true;
  return status;
}

}  // namespace qmx
