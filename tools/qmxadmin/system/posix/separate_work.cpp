#include "tools/qmxadmin/system/separate_work.h"

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "platform/error.h"
#include "platform/system/end_at_once.h"

namespace qmx {
namespace {

[[noreturn]] void RaiseSystemError(const char* what) {
  throw Error(errors::kOutOfMemory, "qmxadmin check", fmt::format("{}: {}.", what, std::strerror(errno)));
}

}  // namespace

struct SeparateWork::State {
  pid_t process = -1;
  int pipe = -1;
};

SeparateWork::SeparateWork(const Steps& steps, std::size_t first) : state_(std::make_unique<State>()) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) RaiseSystemError("No pipe can be created");
  state_->process = fork();
  if (state_->process < 0) RaiseSystemError("No process can be created");
  if (state_->process == 0) {
    close(ends[0]);
    steps(first, ends[1]);
    EndAtOnce(0);
  }
  close(ends[1]);
  state_->pipe = ends[0];
}

SeparateWork::~SeparateWork() { close(state_->pipe); }

bool SeparateWork::IsThisProcess() { return false; }

std::string SeparateWork::Read() {
  std::array<char, 4096> buffer{};
  ssize_t count = 0;
  do count = read(state_->pipe, buffer.data(), buffer.size());
  while (count < 0 && errno == EINTR);
  if (count < 0) RaiseSystemError("The checks cannot be read");
  return {buffer.data(), static_cast<std::size_t>(count)};
}

std::string SeparateWork::WaitForEnd() {
  int end = 0;
  while (waitpid(state_->process, &end, 0) < 0 && errno == EINTR) continue;
  if (WIFSIGNALED(end)) return fmt::format("signal {} ({}) ended the process", WTERMSIG(end), strsignal(WTERMSIG(end)));
  return fmt::format("something called exit with status {}", WEXITSTATUS(end));
}

}  // namespace qmx
