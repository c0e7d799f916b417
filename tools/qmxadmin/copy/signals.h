// The signals that matter while copies run, on a descriptor that poll can wait for: the end of a child process, and
// requests to end this program.
#pragma once

#include <csignal>
#include <vector>

namespace qmx {

// Blocks the signals while it exists, so that they only show in Take(). Signals that this process ignores, as under
// nohup, stay ignored.
class Signals {
 public:
  Signals();
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  int Descriptor() const { return descriptor_; }
  std::vector<int> Take();  // returns pending signals, without waiting

 private:
  sigset_t before_{};
  int descriptor_ = -1;
};

}  // namespace qmx
