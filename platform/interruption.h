// A request that the run end, as a signal makes it. It becomes an Error, raised once, at the next place that asks.
//
// Any thread and any signal handler may request. The program's thread asks.
#pragma once

#include <atomic>

namespace qmx {

class Interruption {
 public:
  // `what` interrupts, as the error names it: "SIGTERM". It must live until the process ends.
  static void Request(const char* what) noexcept { what_.store(what, std::memory_order_relaxed); }

  static bool IsRequested() noexcept { return what_.load(std::memory_order_relaxed) != nullptr; }

  // Raises 18 with the source "Interrupted" if there is a request, which is fulfilled by that.
  static void RaiseIfRequested();

 private:
  static inline std::atomic<const char*> what_ = nullptr;
};

}  // namespace qmx
