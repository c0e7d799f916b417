// Programs run on a terminal of their own, and what its user sees.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace qmx::test {

struct TerminalRun {
  int status = -1;    // of its exit; 128 plus the signal's number when it was killed by one
  std::string shown;  // every character, standard output and standard error together
};

// It has the test's own environment with these variables on top, $TERM "xterm" among them. It is killed when this
// object goes before its end was waited for.
class TerminalProcess {
 public:
  TerminalProcess(const std::string& program, const std::vector<std::string>& arguments,
                  std::map<std::string, std::string> environment = {}, int columns = 80, int rows = 24);
  ~TerminalProcess();
  TerminalProcess(const TerminalProcess&) = delete;
  TerminalProcess& operator=(const TerminalProcess&) = delete;

  void WaitFor(const std::string& text);  // to be shown; raises when it ends without
  void Type(const std::string& keys);
  void Signal(int signal) const;
  TerminalRun Wait();

 private:
  bool Read();  // false at the end

  pid_t child_;
  int terminal_ = -1;
  bool hasEnded_ = false;
  std::string shown_;
};

// The lines that stand on the terminal after that, without trailing blanks and empty lines at the end. Only what our
// programs write is understood: texts, "\r", "\n", and the sequences that go up, clear lines and set colours.
std::vector<std::string> ScreenAfter(const std::string& shown);

}  // namespace qmx::test
