#include "platform/posix/end_line.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/running_call.h"
#include "platform/scheduling_server.h"

namespace qmx {
namespace {

constexpr const char* kClearLine = "\r\x1b[K";  // takes away a progress line that may stand there

std::array<char, 64> table{};

}  // namespace

void EndLine::SetTable(std::string_view tableCode) noexcept {
  table.fill('\0');
  std::copy_n(tableCode.begin(), std::min(tableCode.size(), table.size() - 1), table.begin());
}

EndLine::EndLine(const char* reason) noexcept {
  Add(reason);
  AddCall();
  AddTable();
}

void EndLine::Add(const char* text) noexcept {
  for (; *text && length_ < text_.size() - 1; ++text) {
    const bool isControl = static_cast<unsigned char>(*text) < 0x20 || *text == 0x7f;
    text_[length_++] = isControl ? ' ' : *text;
  }
}

void EndLine::AddCall() noexcept {
  const char* const member = RunningCall::Member();
  if (!member) return Add(" outside of all component calls");
  const char* const progId = RunningCall::ProgId();
  Add(" during ");
  Add(member);
  Add(" of ");
  Add(progId ? progId : "an object without a ProgID");
}

// Calls to the ERP are made only while the table is marked. Others may come before or after.
void EndLine::AddTable() noexcept {
  if (!table[0]) return;
  const bool isErps = RunningCall::Member() && !IsSchedulingServers(RunningCall::ProgId());
  Add(isErps ? ": the table stays in progress: qmxadmin release "
             : ": the table may stay in progress: qmxadmin status, qmxadmin release ");
  Add(table.data());
}

void EndLine::Write() noexcept {
  const int errorBefore = errno;
  const auto write = [](const char* text, std::size_t length) {
    while (length > 0) {
      const ssize_t written = ::write(STDERR_FILENO, text, length);
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) return;
      text += written;
      length -= static_cast<std::size_t>(written);
    }
  };
  if (isatty(STDERR_FILENO) == 1) write(kClearLine, std::string_view(kClearLine).size());
  text_[length_++] = '\n';
  write(text_.data(), length_);
  errno = errorBefore;
}

}  // namespace qmx
