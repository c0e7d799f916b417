// The call to a component that is running: readable at any moment, by every thread and by a signal handler.
//
// It explains the end of a process whose component did not return. The texts that it holds live until the process ends.
#pragma once

#include <atomic>
#include <string_view>

namespace qmx {

// A call runs as long as its RunningCall lives. They do not nest: where a component calls the program back,
// OuterCallRestored brings the outer call back.
class RunningCall {
 public:
  // `progId` is null where it is not known. Both texts are those of KeepText.
  RunningCall(const char* progId, const char* member) noexcept {
    progId_.store(progId, std::memory_order_relaxed);
    member_.store(member, std::memory_order_release);
  }
  ~RunningCall() { member_.store(nullptr, std::memory_order_relaxed); }
  RunningCall(const RunningCall&) = delete;
  RunningCall& operator=(const RunningCall&) = delete;

  static const char* Member() noexcept { return member_.load(std::memory_order_acquire); }  // null while no call runs
  static const char* ProgId() noexcept { return progId_.load(std::memory_order_relaxed); }  // of the last call

  // The same text, zero-terminated, at an address that stays valid. Equal texts share one. For the program's thread.
  static const char* KeepText(std::string_view text);

 private:
  friend class OuterCallRestored;
  static inline std::atomic<const char*> progId_ = nullptr;
  static inline std::atomic<const char*> member_ = nullptr;
};

// Restores, when it goes, the call that was running when it was made.
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
