#include "platform/system/interrupt_signals.h"

#include <windows.h>

#include <atomic>

#include "platform/interruption.h"
#include "platform/system/standard_error.h"

namespace qmx {
namespace {

constexpr std::int64_t kTogether = 50;  // milliseconds

std::atomic<const char*> sentence = nullptr;
std::atomic<std::int64_t> firstAt = 0;  // 0 before the first

const char* NameOf(DWORD event) noexcept {
  switch (event) {
    case CTRL_C_EVENT:
      return "CTRL_C";
    case CTRL_BREAK_EVENT:
      return "CTRL_BREAK";
    case CTRL_CLOSE_EVENT:
      return "CTRL_CLOSE";
    case CTRL_LOGOFF_EVENT:
      return "CTRL_LOGOFF";
    case CTRL_SHUTDOWN_EVENT:
      return "CTRL_SHUTDOWN";
    default:
      return nullptr;
  }
}

bool IsKey(DWORD event) noexcept { return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT; }

// Windows calls it in a thread of its own. After the other events it ends the process as soon as this returns, so this
// waits for the end of main, or of the time that Windows gives.
BOOL WINAPI Take(DWORD event) {
  const char* const name = NameOf(event);
  if (!name) return FALSE;
  const std::int64_t now = static_cast<std::int64_t>(GetTickCount64()) + 1;
  std::int64_t first = 0;
  if (firstAt.compare_exchange_strong(first, now)) {
    Interruption::Request(name);
    WriteToStandardError({name, ": ", sentence.load(), "\n"});
  } else if (now - first > kTogether && IsKey(event)) {
    WriteToStandardError({});  // clears the progress line
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
  }
  if (!IsKey(event)) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

InterruptSignals::InterruptSignals(const char* whatHappens) noexcept {
  sentence = whatHappens;
  firstAt = 0;
  SetConsoleCtrlHandler(Take, TRUE);
}

InterruptSignals::~InterruptSignals() { SetConsoleCtrlHandler(Take, FALSE); }

}  // namespace qmx
