#include "platform/system/standard_error.h"

#include <unistd.h>

#include <cerrno>

#include "platform/system/write_all.h"

namespace qmx {
namespace {

constexpr std::string_view kClearLine = "\r\x1b[K";

}  // namespace

void WriteToStandardError(std::initializer_list<std::string_view> pieces) noexcept {
  const int errorBefore = errno;
  if (isatty(STDERR_FILENO) == 1) WriteAll(STDERR_FILENO, kClearLine);
  for (const std::string_view piece : pieces) WriteAll(STDERR_FILENO, piece);
  errno = errorBefore;
}

}  // namespace qmx
