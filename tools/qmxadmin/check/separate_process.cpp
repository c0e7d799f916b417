#include "tools/qmxadmin/check/separate_process.h"

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/error.h"
#include "platform/system/write_all.h"
#include "tools/qmxadmin/json_output.h"

namespace qmx {
namespace {

constexpr const char* kDone = "done";
constexpr const char* kReportIt = "Report it to the makers of the component server.";

[[noreturn]] void RaiseSystemError(const char* what) {
  throw Error(errors::kOutOfMemory, "qmxadmin check", fmt::format("{}: {}.", what, std::strerror(errno)));
}

// Writes each finding as one line of JSON.
class PipedFindings : public FindingSink {
 public:
  explicit PipedFindings(int pipe) : pipe_(pipe) {}
  void Add(const Finding& finding) override {
    Write({static_cast<int>(finding.state), finding.what, finding.detail, finding.whatToDo});
  }
  void Done() { Write(kDone); }

 private:
  void Write(const Json& value) { WriteAll(pipe_, JsonText(value) + "\n"); }
  int pipe_;
};

std::string EndOf(int state) {
  if (WIFSIGNALED(state))
    return fmt::format("signal {} ({}) ended the process", WTERMSIG(state), strsignal(WTERMSIG(state)));
  return fmt::format("something called exit with status {}", WEXITSTATUS(state));
}

// One process, which runs the checks from `first` on.
class CheckProcess {
 public:
  CheckProcess(const std::vector<SeparateCheck>& checks, std::size_t first) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) RaiseSystemError("No pipe can be created");
    std::cout.flush();
    process_ = fork();
    if (process_ < 0) RaiseSystemError("No process can be created");
    if (process_ == 0) {
      close(ends[0]);
      Run(checks, first, ends[1]);
    }
    close(ends[1]);
    pipe_ = ends[0];
  }
  ~CheckProcess() { close(pipe_); }
  CheckProcess(const CheckProcess&) = delete;
  CheckProcess& operator=(const CheckProcess&) = delete;

  // Adds the findings as they arrive. Returns how many checks came to their end.
  std::size_t Receive(FindingSink& findings) {
    std::size_t done = 0;
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(pipe_, buffer.data(), buffer.size())) != 0;) {
      if (count < 0 && errno != EINTR) RaiseSystemError("The checks cannot be read");
      text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
      for (std::size_t end = 0; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
        const Json line = Json::parse(text.substr(0, end));
        if (line == kDone) {
          ++done;
        } else {
          findings.Add({static_cast<Finding::State>(line[0].get<int>()), line[1], line[2], line[3]});
        }
      }
    }
    return done;
  }

  int Wait() const {
    int state = 0;
    while (waitpid(process_, &state, 0) < 0 && errno == EINTR) continue;
    return state;
  }

 private:
  [[noreturn]] static void Run(const std::vector<SeparateCheck>& checks, std::size_t first, int pipe) {
    PipedFindings findings(pipe);
    for (std::size_t check = first; check < checks.size(); ++check) {
      checks[check].run(findings);
      findings.Done();
    }
    _exit(0);
  }

  pid_t process_ = -1;
  int pipe_ = -1;
};

}  // namespace

void RunInSeparateProcess(const std::vector<SeparateCheck>& checks, FindingSink& findings) {
  for (std::size_t next = 0; next < checks.size();) {
    CheckProcess process(checks, next);
    next += process.Receive(findings);
    const int state = process.Wait();
    if (next == checks.size()) return;
    findings.Wrong(checks[next].what, EndOf(state) + " during this check", kReportIt);
    ++next;
  }
}

}  // namespace qmx
