// The end record of a run that the program did not end itself: a component called exit, or the process crashed.
//
// Written without memory of its own, so that exit handlers and signal handlers may write it, on any thread. It has the
// fields that are known without looking, one cause, and no counts.
#pragma once

#include <atomic>
#include <cstdint>
#include <ctime>
#include <string_view>

namespace qmx {

// What a sudden end needs to know. One for the process.
class SuddenEnd {
 public:
  // `beginning` is the record up to the value of its time, without the quote. The descriptor is borrowed. If the cause
  // may hold a secret, "***" replaces it.
  static void Arm(int descriptor, std::string_view beginning, long offset, bool showsCause = true) noexcept;

  // From here on no end is written: true for the first that asks.
  static bool Disarm() noexcept { return armed_.exchange(false); }

  // Writes the record, unless an end record is written already or none was armed. Status is the exit status, or 128
  // plus the signal's number. Characters of the cause that are not ASCII become "?".
  static void Write(std::string_view cause, int status) noexcept;

 private:
  static inline std::atomic<bool> armed_ = false;
};

}  // namespace qmx
