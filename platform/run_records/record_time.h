// The time of a run record: local time to the millisecond, with the zone's offset.
//
// Allocates nothing, so that a signal handler may use it.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace qmx {

class RecordTime {
 public:
  using Moment = std::chrono::system_clock::time_point;

  // "2026-11-20T14:05:09.123+01:00". The offset from UTC is in seconds, and whole minutes of it are shown.
  RecordTime(Moment moment, long offset) noexcept;
  std::string_view Text() const noexcept { return {text_.data(), length_}; }

 private:
  void AddDigits(std::int64_t value, int digits) noexcept;
  void Add(char c) noexcept { text_[length_++] = c; }

  std::array<char, 40> text_;
  std::size_t length_ = 0;
};

}  // namespace qmx
