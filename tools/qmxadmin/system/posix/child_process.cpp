#include "tools/qmxadmin/system/child_process.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>

#include "platform/error.h"
#include "tools/qmxadmin/system/posix/child_state.h"

namespace qmx {
namespace {

constexpr int kProgressDescriptor = 3;

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw Error(errors::kDeviceIo, "qmxadmin", "No pipe can be created.");
    read = ends[0];
    write = ends[1];
    fcntl(read, F_SETFL, O_NONBLOCK);
  }
  int read = -1;
  int write = -1;
};

// Returns what can be read without waiting.
std::string ReadAll(int descriptor) {
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = read(descriptor, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

std::vector<std::string> EnvironmentWith(const std::vector<ChildProcess::Variable>& variables) {
  std::vector<std::string> environment;
  for (const auto& [name, value] : variables) environment.push_back(fmt::format("{}={}", name, value));
  for (char** entry = environ; *entry; ++entry) {
    const std::string_view variable = *entry;
    const std::string_view name = variable.substr(0, variable.find('='));
    const bool isReplaced = std::any_of(variables.begin(), variables.end(),
                                        [&](const ChildProcess::Variable& ours) { return ours.name == name; });
    if (!isReplaced) environment.emplace_back(variable);
  }
  return environment;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Returns an errno value, or 0.
int Launch(pid_t& process, const std::string& program, const std::string& argument,
           const std::vector<ChildProcess::Variable>& variables, int progress, int output) {
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&files, output, STDERR_FILENO);
  posix_spawn_file_actions_adddup2(&files, progress, kProgressDescriptor);

  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setpgroup(&attributes, 0);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);

  std::vector<std::string> words = {program, argument};
  std::vector<std::string> environment = EnvironmentWith(variables);
  const int failure =
      posix_spawn(&process, program.c_str(), &files, &attributes, Pointers(words).data(), Pointers(environment).data());
  posix_spawn_file_actions_destroy(&files);
  posix_spawnattr_destroy(&attributes);
  return failure;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::string& argument, std::vector<Variable> variables)
    : state_(std::make_unique<State>()) {
  const Pipe progress;
  const Pipe output;
  state_->progress = progress.read;
  state_->output = output.read;
  variables.push_back({"QMX_PROGRESS_FD", std::to_string(kProgressDescriptor)});
  const int failure = Launch(state_->process, program, argument, variables, progress.write, output.write);
  close(progress.write);
  close(output.write);
  if (failure == 0) return;
  throw Error(errors::kFileNotFound, "qmxadmin copy",
              fmt::format("{} cannot be started: {}.", program, std::strerror(failure)));
}

ChildProcess::~ChildProcess() {
  close(state_->progress);
  close(state_->output);
}

std::string ChildProcess::ReadProgress() { return ReadAll(state_->progress); }

std::string ChildProcess::ReadOutput() { return ReadAll(state_->output); }

bool ChildProcess::HasEnded() {
  if (!state_->hasEnded && waitpid(state_->process, &state_->end, WNOHANG) == state_->process) state_->hasEnded = true;
  return state_->hasEnded;
}

void ChildProcess::PassOn(const EndRequest& request) const {
  if (!state_->hasEnded) kill(state_->process, request.number);
}

std::optional<int> ChildProcess::ExitStatus() const {
  return state_->hasEnded && WIFEXITED(state_->end) ? std::optional(WEXITSTATUS(state_->end)) : std::nullopt;
}

std::string ChildProcess::Killer() const {
  if (!state_->hasEnded || !WIFSIGNALED(state_->end)) return {};
  const int signal = WTERMSIG(state_->end);
  return fmt::format("signal {} ({})", signal, strsignal(signal));
}

}  // namespace qmx
