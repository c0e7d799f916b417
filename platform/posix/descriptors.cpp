#include "platform/system/descriptors.h"

#include <fcntl.h>
#include <poll.h>

namespace qmx {

int InheritedDescriptor(int number) noexcept {
  const int flags = fcntl(number, F_GETFD);
  return flags < 0 || fcntl(number, F_SETFD, flags | FD_CLOEXEC) < 0 ? -1 : number;
}

int Duplicated(int descriptor) noexcept { return fcntl(descriptor, F_DUPFD_CLOEXEC, 0); }

bool TakesALine(int descriptor, std::chrono::milliseconds within) noexcept {
  pollfd state{descriptor, POLLOUT, 0};
  return poll(&state, 1, static_cast<int>(within.count())) == 1 && (state.revents & POLLOUT) != 0;
}

}  // namespace qmx
