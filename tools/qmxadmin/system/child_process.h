// A program that this one started: what it writes, and how it ends.
//
// It has no standard input, and a descriptor of its own for its progress, which $QMX_PROGRESS_FD names. It has its own
// process group, so Ctrl-C at the terminal reaches only this program.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/qmxadmin/system/end_requests.h"

namespace qmx {

class ChildProcess {
 public:
  struct Variable {
    std::string name, value;
  };

  // The variables replace those of this process. Raises 57 without a pipe, and 53 if the program cannot be started.
  ChildProcess(const std::string& program, const std::string& argument, std::vector<Variable> variables);
  ~ChildProcess();  // does not wait for the process
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // What it has written since the last time, without waiting.
  std::string ReadProgress();
  std::string ReadOutput();  // standard output and standard error

  bool HasEnded();  // without waiting
  void PassOn(const EndRequest& request) const;

  std::optional<int> ExitStatus() const;  // none if it did not end by itself
  std::string Killer() const;             // what ended it otherwise: "signal 9 (Killed)"; empty if nothing did

  struct State;
  const State& Inside() const { return *state_; }  // for what waits for it

 private:
  std::unique_ptr<State> state_;
};

}  // namespace qmx
