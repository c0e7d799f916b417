#include "platform/windows/line_pipe.h"

namespace qmx {
namespace {

constexpr DWORD kBetweenAttempts = 10;  // milliseconds

}  // namespace

LinePipeCalls linePipeCalls = {WriteFile, Sleep};

bool LinePipe::WriteRest(HANDLE pipe, TimePoint end) noexcept {
  while (written_ < length_) {
    DWORD written = 0;
    const auto length = static_cast<DWORD>(length_ - written_);
    if (!linePipeCalls.write(pipe, line_.data() + written_, length, &written, nullptr)) return false;
    written_ += written;
    if (written > 0) continue;
    if (std::chrono::steady_clock::now() >= end) return false;
    linePipeCalls.pause(kBetweenAttempts);
  }
  return true;
}

bool LinePipe::Write(HANDLE pipe, std::string_view line, std::chrono::milliseconds within) noexcept {
  const TimePoint end = std::chrono::steady_clock::now() + within;
  const std::unique_lock lock(mutex_, end);
  if (!lock || !WriteRest(pipe, end)) return false;
  length_ = line.copy(line_.data(), line_.size());
  written_ = 0;
  WriteRest(pipe, end);
  const bool isBegun = written_ > 0;
  if (!isBegun) length_ = 0;
  return isBegun;
}

}  // namespace qmx
