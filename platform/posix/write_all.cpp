#include "platform/system/write_all.h"

#include <unistd.h>

#include <cerrno>

namespace qmx {

void WriteAll(int descriptor, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

int WriteAtOnce(int descriptor, std::string_view text) noexcept {
  ssize_t written = -1;
  do written = write(descriptor, text.data(), text.size());
  while (written < 0 && errno == EINTR);
  if (written == static_cast<ssize_t>(text.size())) return 0;
  return written < 0 ? errno : ENOSPC;
}

}  // namespace qmx
