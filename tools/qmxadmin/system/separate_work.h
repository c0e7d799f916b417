// Work in a process of its own, which may crash or call exit.
//
// The work is numbered in steps. Its process does the steps from the first one on.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace qmx {

class SeparateWork {
 public:
  // What the process does: it writes its results on the descriptor.
  using Steps = std::function<void(std::size_t first, int descriptor)>;

  // Raises 7 if there is no pipe or no process. Where a system cannot fork, the process is this program once more, with
  // the same command line: it comes here again, does the steps and ends.
  SeparateWork(const Steps& steps, std::size_t first);
  ~SeparateWork();
  SeparateWork(const SeparateWork&) = delete;
  SeparateWork& operator=(const SeparateWork&) = delete;

  // Whether this process is such a process of a system that cannot fork. It does nothing but the steps.
  static bool IsThisProcess();

  std::string Read();        // waits; empty at the end
  std::string WaitForEnd();  // says how it ended: "something called exit with status 0"

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qmx
