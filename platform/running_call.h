// The call to a component that is running. Every thread and every signal handler may read it.
//
// The report of a crash or of an unexpected exit names this call. Its texts live until the process ends.
#pragma once

#include <atomic>
#include <string_view>

namespace qmx {

// A call runs as long as its RunningCall lives. They do not nest: when a component calls the program back,
// OuterCallRestored restores the outer call.
class RunningCall {
 public:
  // `progId` may be null. Both texts come from KeepText.
  RunningCall(const char* progId, const char* member) noexcept {
    progId_.store(progId, std::memory_order_relaxed);
    member_.store(member, std::memory_order_release);
  }
  ~RunningCall() { member_.store(nullptr, std::memory_order_relaxed); }
  RunningCall(const RunningCall&) = delete;
  RunningCall& operator=(const RunningCall&) = delete;

  static const char* Member() noexcept { return member_.load(std::memory_order_acquire); }  // null while no call runs
  static const char* ProgId() noexcept { return progId_.load(std::memory_order_relaxed); }  // of the last call

  // Returns a copy of the text, zero-terminated, at an address that stays valid. Equal texts share one copy. For the
  // program's thread only.
  static const char* KeepText(std::string_view text);

 private:
  friend class OuterCallRestored;
  static inline std::atomic<const char*> progId_ = nullptr;
  static inline std::atomic<const char*> member_ = nullptr;
};

// Its destructor restores the call that was running at its construction.
class OuterCallRestored {
 public:
  OuterCallRestored() noexcept = default;
  ~OuterCallRestored() {
    RunningCall::progId_.store(progId_, std::memory_order_relaxed);
    RunningCall::member_.store(member_, std::memory_order_release);
  }
  OuterCallRestored(const OuterCallRestored&) = delete;
  OuterCallRestored& operator=(const OuterCallRestored&) = delete;

 private:
  const char* progId_ = RunningCall::ProgId();
  const char* member_ = RunningCall::Member();
};

}  // namespace qmx
