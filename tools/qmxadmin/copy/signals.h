// The signals that matter while copies run, as something that can be waited for: the end of a child, and the wish that
// this program end.
#pragma once

#include <csignal>
#include <vector>

namespace qmx {

// While it lives, the signals are kept back for Take(), and no longer do what they would. Those that this process
// ignores, as behind nohup, stay ignored.
class Signals {
 public:
  Signals();
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  int Descriptor() const { return descriptor_; }
  std::vector<int> Take();  // those that have come, without waiting

 private:
  sigset_t before_{};
  int descriptor_ = -1;
};

}  // namespace qmx
