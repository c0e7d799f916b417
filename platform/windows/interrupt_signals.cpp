#include "platform/system/interrupt_signals.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <optional>

#include "platform/interruption.h"
#include "platform/system/end_at_once.h"
#include "platform/system/end_line.h"
#include "platform/system/standard_error.h"
#include "platform/windows/end_event_name.h"
#include "platform/windows/end_events.h"
#include "platform/windows/handle.h"

namespace qmx {
namespace {

constexpr std::int64_t kTogether = 50;     // milliseconds
constexpr DWORD kForTheLastWords = 1'000;  // milliseconds, at most a half of the time that Windows gives
constexpr int kStatusFailed = 2;

std::atomic<const char*> sentence = nullptr;
std::atomic<std::int64_t> firstAt = 0;  // 0 before the first

// Makes the request, or returns how long ago the first one was made.
std::optional<std::int64_t> RequestOrSinceFirst(const char* name) noexcept {
  const std::int64_t now = static_cast<std::int64_t>(GetTickCount64()) + 1;
  std::int64_t first = 0;
  if (!firstAt.compare_exchange_strong(first, now)) return now - first;
  Interruption::Request(name);
  WriteToStandardError({name, ": ", sentence.load(), "\n"});
  return std::nullopt;
}

// Windows ends the process as soon as the handler returns, or without a word when its time is over. So this waits for
// the end of main, and writes the last line shortly before.
[[noreturn]] void WaitForTheEnd(DWORD event) noexcept {
  const DWORD time = endEventCalls.timeToEnd();
  Sleep(time - std::min(kForTheLastWords, time / 2));
  EndLine(event == CTRL_CLOSE_EVENT ? "The closed console ended the run" : "The end of the session ended the run")
      .Write(kStatusFailed);
  EndAtOnce(kStatusFailed);
}

// Windows calls it in a thread of its own.
BOOL WINAPI Take(DWORD event) {
  const char* const name = EndEvents::NameOf(event);
  if (!name) return FALSE;
  const std::optional<std::int64_t> sinceFirst = RequestOrSinceFirst(name);
  if (EndEvents::EndsTheProcess(event)) WaitForTheEnd(event);
  if (EndEvents::IsKey(event) && sinceFirst.value_or(0) > kTogether) {
    WriteToStandardError({});  // clears the progress line
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
  }
  return TRUE;
}

// The event of the program that started this one. Null if it named none.
HANDLE GivenEvent() noexcept {
  std::array<wchar_t, 128> name{};
  const DWORD length = GetEnvironmentVariableW(kEndEventVariable, name.data(), static_cast<DWORD>(name.size()));
  return length > 0 && length < name.size() ? OpenEventW(SYNCHRONIZE, FALSE, name.data()) : nullptr;
}

void CALLBACK TakeGivenEvent(void*, BOOLEAN) { RequestOrSinceFirst("qmxadmin"); }

// Waits for that event in a thread of Windows.
class GivenRequests {
 public:
  GivenRequests() noexcept : event_(GivenEvent()) {
    if (event_ &&
        !RegisterWaitForSingleObject(&wait_, event_.Get(), TakeGivenEvent, nullptr, INFINITE, WT_EXECUTEONLYONCE)) {
      wait_ = nullptr;
    }
  }
  ~GivenRequests() {
    if (wait_) UnregisterWaitEx(wait_, INVALID_HANDLE_VALUE);
  }
  GivenRequests(const GivenRequests&) = delete;
  GivenRequests& operator=(const GivenRequests&) = delete;

 private:
  Handle event_;
  HANDLE wait_ = nullptr;
};

struct Sources {
  EndEvents events{Take};
  GivenRequests given;
};
std::optional<Sources> sources;

}  // namespace

InterruptSignals::InterruptSignals(const char* whatHappens) noexcept {
  sentence = whatHappens;
  firstAt = 0;
  sources.emplace();
  if (!sources->events.HasConsoleHandler())
    WriteToStandardError({"Windows refuses to announce Ctrl+C: it would end the run at once.\n"});
}

InterruptSignals::~InterruptSignals() { sources.reset(); }

}  // namespace qmx
