// Makes SIGINT, SIGTERM and SIGHUP requests that the run end (platform/interruption.h), instead of ends.
//
// Signals that this process ignores, as behind nohup, stay ignored. The first signal prints a sentence on standard
// error. A further one, of any of the three, does what it does by default: it ends the process at once. Signals within
// 50 ms count as one: a terminal that closes, and timeout(1), send theirs twice.
#pragma once

namespace qmx {

// While it lives, signals are requests. One at a time.
class InterruptSignals {
 public:
  // `whatHappens` completes the sentence "SIGTERM: ...", and lives until the process ends.
  explicit InterruptSignals(const char* whatHappens) noexcept;
  ~InterruptSignals();
  InterruptSignals(const InterruptSignals&) = delete;
  InterruptSignals& operator=(const InterruptSignals&) = delete;
};

}  // namespace qmx
