// A request to end the run, made by a signal. The next check raises it as an Error, once.
//
// Any thread and any signal handler may make the request. The program's thread checks for it.
#pragma once

#include <atomic>

namespace qmx {

class Interruption {
 public:
  // `what` names the interruption in the error: "SIGTERM". It must live until the process ends.
  static void Request(const char* what) noexcept { what_.store(what, std::memory_order_relaxed); }

  static bool IsRequested() noexcept { return what_.load(std::memory_order_relaxed) != nullptr; }

  // Raises 18 with the source "Interrupted" if there is a request, and forgets the request.
  static void RaiseIfRequested();

 private:
  static inline std::atomic<const char*> what_ = nullptr;
};

}  // namespace qmx
