#include "platform/posix/failure_report.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace qmx {
namespace {

void WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;  // nobody is left to tell
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

void PosixFailureReport::Report(const Error& error) noexcept {
  try {
    WriteAll(descriptor_, DescribeChain(error) + "\n");
  } catch (...) {  // no memory for the text: say at least the number, which needs little
    WriteAll(descriptor_, "A failure could not be described: out of memory.\n");
  }
}

}  // namespace qmx
