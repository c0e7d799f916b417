#include "tools/qmxadmin/system/end_requests.h"

#include <windows.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/error.h"
#include "platform/windows/end_events.h"
#include "platform/windows/handle.h"
#include "platform/windows/system_codes.h"
#include "tools/qmxadmin/system/windows/child_state.h"

namespace qmx {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{10};  // Windows cannot wait for a pipe

std::mutex mutex;
std::vector<EndRequest> pending;
HANDLE isPending = nullptr;

const char* NameOf(DWORD event) {
  switch (event) {
    case CTRL_C_EVENT:
      return "Ctrl+C";
    case CTRL_BREAK_EVENT:
      return "Ctrl+Break";
    case CTRL_CLOSE_EVENT:
      return "The console is closed";
    case CTRL_LOGOFF_EVENT:
      return "The user logs off";
    case CTRL_SHUTDOWN_EVENT:
      return "Windows shuts down";
    case EndEvents::kClose:
      return "WM_CLOSE";
    default:
      return nullptr;
  }
}

// Windows calls it in a thread of its own. If it ends the process when this returns, this waits for the end of main, or
// of the time that Windows gives.
BOOL WINAPI Keep(DWORD event) {
  const char* const name = NameOf(event);
  if (!name) return FALSE;
  {
    const std::lock_guard lock(mutex);
    pending.push_back({static_cast<int>(event), name});
    if (isPending) SetEvent(isPending);
  }
  if (EndEvents::EndsTheProcess(event)) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

struct EndRequests::State {
  State() {
    if (!pending)
      throw Error(errors::kDeviceIo, "qmxadmin", "No event can be created: " + SystemMessage(GetLastError()) + ".");
    const std::lock_guard lock(mutex);
    isPending = pending.Get();
    events.emplace(Keep);
  }
  ~State() {
    events.reset();
    const std::lock_guard lock(mutex);
    isPending = nullptr;
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  Handle pending{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  std::optional<EndEvents> events;
};

EndRequests::EndRequests() : state_(std::make_unique<State>()) {}

EndRequests::~EndRequests() = default;

void EndRequests::Wait(const std::vector<const ChildProcess*>& children, std::chrono::milliseconds atMost) const {
  std::vector<HANDLE> awaited = {state_->pending.Get()};
  for (const ChildProcess* child : children) {
    if (awaited.size() < MAXIMUM_WAIT_OBJECTS) awaited.push_back(child->Inside().process);
  }
  const auto hasWritten = [](const ChildProcess* child) {
    return Readable(child->Inside().progress) > 0 || Readable(child->Inside().output) > 0;
  };
  const auto end = std::chrono::steady_clock::now() + atMost;
  while (std::chrono::steady_clock::now() < end) {
    if (std::any_of(children.begin(), children.end(), hasWritten)) return;
    const DWORD answer = WaitForMultipleObjects(static_cast<DWORD>(awaited.size()), awaited.data(), FALSE,
                                                static_cast<DWORD>(kBetweenLooks.count()));
    if (answer != WAIT_TIMEOUT) return;
  }
}

std::vector<EndRequest> EndRequests::Take() {
  const std::lock_guard lock(mutex);
  ResetEvent(isPending);
  return std::exchange(pending, {});
}

}  // namespace qmx
