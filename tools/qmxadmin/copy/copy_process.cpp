#include "tools/qmxadmin/copy/copy_process.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "platform/error.h"

namespace qmx {
namespace {

constexpr const char* kName = "qmxdatacopy";
constexpr int kProgressDescriptor = 3;
constexpr int kCopyFailed = 1;
constexpr std::size_t kMostOutput = 64 * 1024;  // keeps the beginning of a chain of causes

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

bool IsProgram(const std::string& path) {
  return access(path.c_str(), X_OK) == 0 && !std::filesystem::is_directory(path);
}

std::vector<std::string> EnvironmentOf(const CopyMode& mode) {
  std::vector<std::string> environment = {fmt::format("QMX_PROGRESS_FD={}", kProgressDescriptor)};
  if (mode.full) environment.emplace_back("QMX_METHOD=full");
  if (mode.whole) environment.emplace_back("QMX_COPY=whole");
  const std::size_t own = environment.size();
  for (char** entry = environ; *entry; ++entry) {
    const std::string_view variable = *entry;
    const std::string_view name = variable.substr(0, variable.find('='));
    const bool isReplaced =
        std::any_of(environment.begin(), environment.begin() + static_cast<std::ptrdiff_t>(own),
                    [&](const std::string& ours) { return ours.substr(0, ours.find('=')) == name; });
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

}  // namespace

std::string FindDataCopy() {
  std::error_code unknown;
  const std::filesystem::path own = std::filesystem::read_symlink("/proc/self/exe", unknown);
  const std::string beside = own.parent_path() / kName;
  if (!unknown && IsProgram(beside)) return beside;
  const char* const variable = std::getenv("PATH");
  const std::string path = variable ? variable : "";
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find(':', start), path.size());
    const std::string candidate = path.substr(start, end - start) + "/" + kName;
    if (IsProgram(candidate)) return candidate;
    start = end + 1;
  }
  throw Error(errors::kFileNotFound, "qmxadmin copy",
              fmt::format("{} is neither in the folder of qmxadmin nor in a folder of $PATH.", kName));
}

CopyProcess::CopyProcess(const std::string& program, const std::string& commandLine, const CopyMode& mode) {
  const Pipe progress;
  const Pipe output;
  descriptors_ = {progress.read, output.read};
  Launch(program, commandLine, mode, progress.write, output.write);
  close(progress.write);
  close(output.write);
}

CopyProcess::~CopyProcess() {
  for (const int descriptor : descriptors_) close(descriptor);
}

void CopyProcess::Launch(const std::string& program, const std::string& commandLine, const CopyMode& mode, int progress,
                         int output) {
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

  std::vector<std::string> words = {program, commandLine};
  std::vector<std::string> environment = EnvironmentOf(mode);
  const int failure = posix_spawn(&process_, program.c_str(), &files, &attributes, Pointers(words).data(),
                                  Pointers(environment).data());
  posix_spawn_file_actions_destroy(&files);
  posix_spawnattr_destroy(&attributes);
  if (failure == 0) return;
  throw Error(errors::kFileNotFound, "qmxadmin copy",
              fmt::format("{} cannot be started: {}.", program, std::strerror(failure)));
}

void CopyProcess::Read() {
  ReadProgress();
  output_ += ReadAll(descriptors_[kOutput]);
  output_.resize(std::min(output_.size(), kMostOutput));
}

void CopyProcess::ReadProgress() {
  progress_ += ReadAll(descriptors_[kProgress]);
  for (std::size_t end = 0; (end = progress_.find('\n')) != std::string::npos;) {
    isDeleting_ = progress_.starts_with("deleting");
    if (progress_.starts_with("rows ")) rows_ = std::atoll(progress_.c_str() + 5);
    if (progress_.starts_with("end ")) reportedStatus_ = std::atoi(progress_.c_str() + 4);
    progress_.erase(0, end + 1);
  }
}

bool CopyProcess::HasEnded() {
  if (!hasEnded_ && waitpid(process_, &state_, WNOHANG) == process_) {
    hasEnded_ = true;
    Read();
  }
  return hasEnded_;
}

void CopyProcess::Signal(int signal) const {
  if (!hasEnded_) kill(process_, signal);
}

int CopyProcess::ExitStatus() const {
  return WIFEXITED(state_) && WEXITSTATUS(state_) == reportedStatus_ ? reportedStatus_ : -1;
}

bool CopyProcess::WasInterrupted() const {
  return ExitStatus() == kCopyFailed && output_.find(", Interrupted: ") != std::string::npos;
}

int CopyProcess::EndingSignal() const { return WIFSIGNALED(state_) ? WTERMSIG(state_) : 0; }

}  // namespace qmx
