#include "tools/qmxadmin/system/end_requests.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "tools/qmxadmin/system/posix/child_state.h"

namespace qmx {

// The end of a child process is a signal too, so that a wait ends with it.
struct EndRequests::State {
  sigset_t before{};
  int descriptor = -1;
};

EndRequests::EndRequests() : state_(std::make_unique<State>()) {
  sigset_t kept;
  sigemptyset(&kept);
  sigaddset(&kept, SIGCHLD);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler != SIG_IGN) sigaddset(&kept, signal);
  }
  pthread_sigmask(SIG_BLOCK, &kept, &state_->before);
  state_->descriptor = signalfd(-1, &kept, SFD_CLOEXEC | SFD_NONBLOCK);
}

EndRequests::~EndRequests() {
  close(state_->descriptor);
  pthread_sigmask(SIG_SETMASK, &state_->before, nullptr);
}

void EndRequests::Wait(const std::vector<const ChildProcess*>& children, std::chrono::milliseconds atMost) const {
  std::vector<pollfd> awaited = {{state_->descriptor, POLLIN, 0}};
  for (const ChildProcess* child : children) {
    awaited.push_back({child->Inside().progress, POLLIN, 0});
    awaited.push_back({child->Inside().output, POLLIN, 0});
  }
  poll(awaited.data(), awaited.size(), static_cast<int>(atMost.count()));
}

std::vector<EndRequest> EndRequests::Take() {
  std::vector<EndRequest> taken;
  for (signalfd_siginfo pending{}; read(state_->descriptor, &pending, sizeof pending) == sizeof pending;) {
    const int signal = static_cast<int>(pending.ssi_signo);
    if (signal != SIGCHLD) taken.push_back({signal, strsignal(signal)});
  }
  return taken;
}

}  // namespace qmx
