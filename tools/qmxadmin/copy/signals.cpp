#include "tools/qmxadmin/copy/signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace qmx {

Signals::Signals() {
  sigset_t kept;
  sigemptyset(&kept);
  sigaddset(&kept, SIGCHLD);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler != SIG_IGN) sigaddset(&kept, signal);
  }
  pthread_sigmask(SIG_BLOCK, &kept, &before_);
  descriptor_ = signalfd(-1, &kept, SFD_CLOEXEC | SFD_NONBLOCK);
}

Signals::~Signals() {
  close(descriptor_);
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

std::vector<int> Signals::Take() {
  std::vector<int> taken;
  for (signalfd_siginfo information{}; read(descriptor_, &information, sizeof information) == sizeof information;) {
    taken.push_back(static_cast<int>(information.ssi_signo));
  }
  return taken;
}

}  // namespace qmx
