// The events by which Windows asks a program to end: the keys Ctrl+C and Ctrl+Break, and the end of the console, of the
// session and of Windows. And the message WM_CLOSE to a hidden window, by which the Task Scheduler ends a task.
//
// The console's handler gets them all. But Windows does not call it at the end of the session in a process that has
// loaded user32.dll, as COM does. There the window gets that message too. Without a window, as in a session without a
// desktop, only the console's handler is left.
#pragma once

#include <windows.h>

namespace qmx {

class EndEvents {
 public:
  // Calls the handler with the event (CTRL_C_EVENT), on threads of Windows. There is one instance
  // at a time.
  explicit EndEvents(PHANDLER_ROUTINE handler) noexcept;
  ~EndEvents();
  EndEvents(const EndEvents&) = delete;
  EndEvents& operator=(const EndEvents&) = delete;

  bool HasConsoleHandler() const noexcept { return hasConsoleHandler_; }  // false if Windows refused it

  static constexpr DWORD kClose = WM_CLOSE;  // the event of that message, which Windows leaves to the program

  static const char* NameOf(DWORD event) noexcept;  // "CTRL_C"; null if it is none of them
  static bool IsKey(DWORD event) noexcept { return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT; }

  // Whether Windows ends the process when the handler returns: after the end of the console or the session.
  static bool EndsTheProcess(DWORD event) noexcept { return !IsKey(event) && event != kClose; }

  // How long Windows waits for a process after such an event, in milliseconds.
  static DWORD TimeToEnd() noexcept;

 private:
  PHANDLER_ROUTINE handler_;
  bool hasConsoleHandler_;
  DWORD windowThread_ = 0;
};

// The calls that tests replace.
struct EndEventCalls {
  BOOL(WINAPI* setConsoleHandler)(PHANDLER_ROUTINE handler, BOOL isAdded);
  DWORD (*timeToEnd)() noexcept;
};
extern EndEventCalls endEventCalls;

inline constexpr const wchar_t* kSessionWindow = L"qmxdatacopy session";  // the class of the hidden window

}  // namespace qmx
