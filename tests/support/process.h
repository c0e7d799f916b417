// Programs run as processes: their exit status and what they wrote.
#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/temp_folder.h"

namespace qmx::test {

struct Process {
  int status = -1;  // of its exit; 128 plus the signal's number when it was killed by one
  std::string out;
  std::string err;
};

// A program that runs beside the test, in the given folder, with the test's own environment and these variables on top;
// standard input is empty. It is killed when this object goes before its end was waited for.
class RunningProcess {
 public:
  RunningProcess(const std::string& program, const std::vector<std::string>& arguments,
                 const std::map<std::string, std::string>& environment = {}, const std::string& folder = ".");
  ~RunningProcess();
  RunningProcess(const RunningProcess&) = delete;
  RunningProcess& operator=(const RunningProcess&) = delete;

  bool HasEnded();
  pid_t Number() const;
  void Signal(int signal);  // not after its end; POSIX systems only
  void Kill();              // not after its end
  Process Wait();

 private:
  struct State;

  std::string program_;
  TempFolder output_;
  std::unique_ptr<State> state_;
};

// On POSIX systems only: gives the signals that end a program their default effects again. A shell in the background
// has its programs ignore some of them, and programs inherit that.
void RestoreEndingSignals();

// What a forked child becomes, on POSIX systems. All of it is made before the fork: the child allocates nothing,
// because another thread of the test may have held the allocator's lock.
class ProgramToBecome {
 public:
  ProgramToBecome(const std::string& program, const std::vector<std::string>& arguments,
                  const std::map<std::string, std::string>& environment);  // on top of the test's own
  ProgramToBecome(const ProgramToBecome&) = delete;
  ProgramToBecome& operator=(const ProgramToBecome&) = delete;

  [[noreturn]] void Become() const;  // with exit status 127 if it cannot be executed

 private:
  static std::vector<char*> Pointers(std::vector<std::string>& words);

  std::vector<std::string> words_, settings_;
  std::vector<char*> arguments_, environment_;
};

// To its end.
Process Run(const std::string& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment = {}, const std::string& folder = ".");

}  // namespace qmx::test
