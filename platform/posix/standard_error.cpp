#include "platform/posix/standard_error.h"

#include <unistd.h>

#include <cerrno>

namespace qmx {
namespace {

constexpr std::string_view kClearLine = "\r\x1b[K";

void Write(std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;  // nobody is left to read it
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

void WriteToStandardError(std::initializer_list<std::string_view> pieces) noexcept {
  const int errorBefore = errno;
  if (isatty(STDERR_FILENO) == 1) Write(kClearLine);
  for (const std::string_view piece : pieces) Write(piece);
  errno = errorBefore;
}

}  // namespace qmx
