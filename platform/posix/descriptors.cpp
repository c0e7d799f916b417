#include "platform/system/descriptors.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>

#include "platform/system/write_all.h"

namespace qmx {

int InheritedDescriptor(int number) noexcept {
  const int flags = fcntl(number, F_GETFD);
  return flags < 0 || fcntl(number, F_SETFD, flags | FD_CLOEXEC) < 0 ? -1 : number;
}

int Duplicated(int descriptor) noexcept { return fcntl(descriptor, F_DUPFD_CLOEXEC, 0); }

// A pipe that has room takes a whole line.
bool WriteLine(int descriptor, std::string_view line, std::chrono::milliseconds within) noexcept {
  using std::chrono::ceil, std::chrono::milliseconds, std::chrono::steady_clock;
  const auto end = steady_clock::now() + within;
  pollfd state{descriptor, POLLOUT, 0};
  int ready = -1;
  do {
    const auto left = std::max(milliseconds(0), ceil<milliseconds>(end - steady_clock::now()));
    ready = poll(&state, 1, static_cast<int>(left.count()));
  } while (ready < 0 && errno == EINTR);
  if (ready != 1 || (state.revents & POLLOUT) == 0) return false;
  WriteAll(descriptor, line);
  return true;
}

}  // namespace qmx
