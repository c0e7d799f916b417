#include "tests/support/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace qmx::test {
namespace {

// The test's own, with these instead.
std::vector<std::string> EnvironmentWith(const std::map<std::string, std::string>& own) {
  std::vector<std::string> all;
  for (char** entry = environ; *entry; ++entry) {
    const std::string text = *entry;
    if (!own.contains(text.substr(0, text.find('=')))) all.push_back(text);
  }
  for (const auto& [name, value] : own) all.push_back(name + "=" + value);
  return all;
}

bool Redirect(const char* path, int flags, int descriptor) {
  const int opened = open(path, flags, 0600);
  return opened >= 0 && dup2(opened, descriptor) >= 0;
}

}  // namespace

ProgramToBecome::ProgramToBecome(const std::string& program, const std::vector<std::string>& arguments,
                                 const std::map<std::string, std::string>& environment)
    : words_{program}, settings_(EnvironmentWith(environment)) {
  words_.insert(words_.end(), arguments.begin(), arguments.end());
  arguments_ = Pointers(words_);
  environment_ = Pointers(settings_);
}

std::vector<char*> ProgramToBecome::Pointers(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

void ProgramToBecome::Become() const {
  RestoreEndingSignals();
  execve(arguments_[0], arguments_.data(), environment_.data());
  _exit(127);
}

struct RunningProcess::State {
  pid_t child = -1;
  bool hasEnded = false;
  int how = 0;

  void Reap(int options, const std::string& program) {
    if (hasEnded) return;
    const pid_t reaped = waitpid(child, &how, options);
    if (reaped < 0) throw std::runtime_error("cannot wait for " + program);
    hasEnded = reaped == child;
  }
};

RunningProcess::RunningProcess(const std::string& program, const std::vector<std::string>& arguments,
                               const std::map<std::string, std::string>& environment, const std::string& folder)
    : program_(program), state_(std::make_unique<State>()) {
  const ProgramToBecome ready(program, arguments, environment);
  const std::string out = output_ / "out";
  const std::string err = output_ / "err";
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot run " + program);
  if (child > 0) {
    state_->child = child;
    return;
  }
  if (Redirect("/dev/null", O_RDONLY, 0) && Redirect(out.c_str(), O_WRONLY | O_CREAT, 1) &&
      Redirect(err.c_str(), O_WRONLY | O_CREAT, 2) && chdir(folder.c_str()) == 0)
    ready.Become();
  _exit(127);
}

RunningProcess::~RunningProcess() {
  if (state_->hasEnded) return;
  kill(state_->child, SIGKILL);
  waitpid(state_->child, nullptr, 0);
}

pid_t RunningProcess::Number() const { return state_->child; }

bool RunningProcess::HasEnded() {
  state_->Reap(WNOHANG, program_);
  return state_->hasEnded;
}

void RunningProcess::Signal(int signal) {
  if (state_->hasEnded || kill(state_->child, signal) != 0) throw std::runtime_error(program_ + " runs no more");
}

void RunningProcess::Kill() { Signal(SIGKILL); }

Process RunningProcess::Wait() {
  state_->Reap(0, program_);
  const int how = state_->how;
  return {WIFEXITED(how) ? WEXITSTATUS(how) : 128 + WTERMSIG(how), ReadFile(output_ / "out"),
          ReadFile(output_ / "err")};
}

void RestoreEndingSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) std::signal(signal, SIG_DFL);
}

Process Run(const std::string& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment, const std::string& folder) {
  return RunningProcess(program, arguments, environment, folder).Wait();
}

}  // namespace qmx::test
