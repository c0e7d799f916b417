// A disk that takes nothing more, for the length of a scope: no file of this process grows past a size.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace qmx::test {

class FullDisk {
 public:
  explicit FullDisk(rlim_t size = 0) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit full{size, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  void (*handler_)(int);
  rlimit before_{};
};

}  // namespace qmx::test
