#include "platform/system/sockets.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace qmx {
namespace {

thread_local Sockets* recording = nullptr;

}  // namespace

Sockets::Recording::Recording(Sockets& sockets) { recording = &sockets; }

Sockets::Recording::~Recording() { recording = nullptr; }

void Sockets::Add(int descriptor) noexcept {
  struct stat state {};
  if (fstat(descriptor, &state) != 0) return;
  const Socket added{descriptor, state.st_dev, state.st_ino};
  const std::lock_guard lock(mutex_);
  const auto has = [&](const Socket& socket) { return socket.descriptor == descriptor; };
  if (const auto known = std::find_if(sockets_.begin(), sockets_.end(), has); known != sockets_.end()) {
    *known = added;
    return;
  }
  try {
    sockets_.push_back(added);
  } catch (...) {  // no memory: an unknown socket is never shut down
  }
}

void Sockets::ShutDown() {
  const std::lock_guard lock(mutex_);
  for (const Socket& socket : sockets_) {
    // A duplicate: its number cannot be closed and reused between the check and the shutdown.
    const int own = fcntl(socket.descriptor, F_DUPFD_CLOEXEC, 0);
    if (own < 0) continue;
    struct stat state {};
    const bool isSame = fstat(own, &state) == 0 && state.st_dev == socket.device && state.st_ino == socket.inode;
    if (isSame) shutdown(own, SHUT_RDWR);
    close(own);
  }
}

}  // namespace qmx

extern "C" __attribute__((visibility("default"))) int connect(int descriptor, const sockaddr* address,
                                                              socklen_t length) {
  using Connect = int (*)(int, const sockaddr*, socklen_t);
  static const auto next = reinterpret_cast<Connect>(dlsym(RTLD_NEXT, "connect"));
  if (qmx::recording) qmx::recording->Add(descriptor);
  if (!next) {
    errno = ENOSYS;
    return -1;
  }
  return next(descriptor, address, length);
}
