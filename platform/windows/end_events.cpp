#include "platform/windows/end_events.h"

#include <algorithm>
#include <atomic>
#include <optional>

namespace qmx {
namespace {

constexpr DWORD kUsualTime = 5000;  // milliseconds

std::atomic<PHANDLER_ROUTINE> current = nullptr;

// None if the message is no event.
std::optional<DWORD> EventOf(UINT message, WPARAM isCertain, LPARAM what) {
  if (message == WM_CLOSE) return EndEvents::kClose;
  if (message != WM_ENDSESSION || !isCertain) return std::nullopt;
  return (static_cast<DWORD>(what) & ENDSESSION_LOGOFF) != 0 ? CTRL_LOGOFF_EVENT : CTRL_SHUTDOWN_EVENT;
}

// The window stays when it is asked to close, because other messages may follow.
LRESULT CALLBACK TakeMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
  const std::optional<DWORD> event = EventOf(message, first, second);
  if (!event) return DefWindowProcW(window, message, first, second);
  if (const PHANDLER_ROUTINE handler = current) handler(*event);
  return 0;
}

DWORD WINAPI ServeWindow(void*) {
  const HINSTANCE program = GetModuleHandleW(nullptr);
  WNDCLASSW kind{};
  kind.lpfnWndProc = TakeMessage;
  kind.hInstance = program;
  kind.lpszClassName = kSessionWindow;
  RegisterClassW(&kind);
  const HWND window =
      CreateWindowExW(0, kSessionWindow, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr, program, nullptr);
  if (!window) return 0;
  for (MSG message{}; GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
  DestroyWindow(window);
  return 0;
}

}  // namespace

EndEventCalls endEventCalls = {SetConsoleCtrlHandler, EndEvents::TimeToEnd};

EndEvents::EndEvents(PHANDLER_ROUTINE handler) noexcept
    : handler_(handler), hasConsoleHandler_(endEventCalls.setConsoleHandler(handler, TRUE) != FALSE) {
  current = handler;
  const HANDLE thread = CreateThread(nullptr, 0, ServeWindow, nullptr, 0, &windowThread_);
  if (thread) {
    CloseHandle(thread);
  } else {
    windowThread_ = 0;
  }
}

// The window's thread may be in the handler until the process ends, so nothing waits for it.
EndEvents::~EndEvents() {
  if (hasConsoleHandler_) endEventCalls.setConsoleHandler(handler_, FALSE);
  current = nullptr;
  if (windowThread_ != 0) PostThreadMessageW(windowThread_, WM_QUIT, 0, 0);
}

const char* EndEvents::NameOf(DWORD event) noexcept {
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
    case kClose:
      return "WM_CLOSE";
    default:
      return nullptr;
  }
}

// The shorter of the times for a closed console and for the end of a session.
DWORD EndEvents::TimeToEnd() noexcept {
  DWORD shortest = kUsualTime;
  for (const UINT setting : {SPI_GETHUNGAPPTIMEOUT, SPI_GETWAITTOKILLTIMEOUT}) {
    DWORD time = 0;
    if (SystemParametersInfoW(setting, 0, &time, 0) && time > 0) shortest = std::min(shortest, time);
  }
  return shortest;
}

}  // namespace qmx
