// The end record of a run that the program did not end itself: a component called exit, or the process crashed.
//
// Writing it allocates no memory, so exit handlers and signal handlers can do it, on any thread. The record has the
// fields that are known in advance, one cause, and no counts.
#pragma once

#include <atomic>
#include <cstdint>
#include <ctime>
#include <string_view>

namespace qmx {

// What a sudden end needs. One per process.
class SuddenEnd {
 public:
  // `beginning` is the record up to the value of its time, without the quote. The descriptor is borrowed. If the cause
  // may hold a secret, "***" replaces it.
  static void Arm(int descriptor, std::string_view beginning, long offset, bool showsCause = true) noexcept;

  // Disarms the sudden end. Returns true on the first call only.
  static bool Disarm() noexcept { return armed_.exchange(false); }

  // Writes the record, unless an end record was already written or none was armed. Status is the exit status, or 128
  // plus the signal's number. Characters of the cause that are not ASCII become "?".
  static void Write(std::string_view cause, int status) noexcept;

 private:
  static inline std::atomic<bool> armed_ = false;
};

}  // namespace qmx
