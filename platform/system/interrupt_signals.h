// Turns what ends programs into requests to end the run (platform/interruption.h): SIGINT, SIGTERM and SIGHUP on a
// POSIX system.
//
// Signals that this process ignores, as under nohup, stay ignored. The first signal prints a message on standard error.
// A second one, of any of the three, ends the process at once, as by default. Signals within 50 ms count as one,
// because a closing terminal and timeout(1) send theirs twice.
//
// On Windows they are the events of the console, the end of the session, the message WM_CLOSE, and an event that
// $QMX_END_EVENT names. Only keys end the process at once when they come again. If Windows ends the process after one,
// the run has the time that Windows gives, and a last line is written before it is over.
#pragma once

namespace qmx {

// Signals are requests during its lifetime. There is one instance at a time.
class InterruptSignals {
 public:
  // `whatHappens` completes the message "SIGTERM: ...". It must live until the process ends.
  explicit InterruptSignals(const char* whatHappens) noexcept;
  ~InterruptSignals();
  InterruptSignals(const InterruptSignals&) = delete;
  InterruptSignals& operator=(const InterruptSignals&) = delete;
};

}  // namespace qmx
