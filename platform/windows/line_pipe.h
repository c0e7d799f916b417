// Writes lines to a pipe whose writes do not wait (PIPE_NOWAIT): a full one takes a part of a line, or nothing.
//
// Windows does not tell how much room a pipe has. The number that it has for that sinks also while a reader waits.
#pragma once

#include <windows.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <string_view>

namespace qmx {

class LinePipe {
 public:
  static constexpr std::size_t kLongest = 128;  // bytes of a line

  // Returns false if nothing of the line was written within that time. The rest of a line that was cut is written
  // before the next line. Any thread may call it.
  bool Write(HANDLE pipe, std::string_view line, std::chrono::milliseconds within) noexcept;

 private:
  using TimePoint = std::chrono::steady_clock::time_point;
  bool WriteRest(HANDLE pipe, TimePoint end) noexcept;  // false if the line is not complete

  std::timed_mutex mutex_;  // where Windows refuses that mode, a write may wait after all
  std::array<char, kLongest> line_{};
  std::size_t length_ = 0;
  std::size_t written_ = 0;  // of the line
};

// The calls that tests replace.
struct LinePipeCalls {
  BOOL(WINAPI* write)(HANDLE pipe, const void* text, DWORD length, DWORD* written, OVERLAPPED* none);
  void(WINAPI* pause)(DWORD milliseconds);
};
extern LinePipeCalls linePipeCalls;

}  // namespace qmx
