#include "tools/qmxadmin/system/processes.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <sstream>

#include "platform/posix/kernel_file.h"
#include "platform/system/process_identity.h"

namespace qmx {
namespace {

namespace fs = std::filesystem;

// Returns the arguments of a command line of the program, joined by blanks, or nothing if it is another program's.
std::optional<std::string> ArgumentsOf(const std::string& program, std::string commandLine) {
  const std::size_t end = std::min(commandLine.find('\0'), commandLine.size());
  if (fs::path(commandLine.substr(0, end)).filename() != program) return std::nullopt;
  commandLine.erase(0, std::min(end + 1, commandLine.size()));
  if (commandLine.ends_with('\0')) commandLine.pop_back();
  std::replace(commandLine.begin(), commandLine.end(), '\0', ' ');
  return commandLine;
}

std::int64_t SecondsOfBoot() {
  std::istringstream file(ReadKernelFile("/proc/stat"));
  for (std::string word; file >> word;) {
    std::int64_t seconds = 0;
    if (word == "btime" && file >> seconds) return seconds;
  }
  return 0;
}

}  // namespace

std::vector<RunningProgram> RunningPrograms(const std::string& name) {
  std::vector<RunningProgram> running;
  std::error_code problem;
  for (fs::directory_iterator entry("/proc", problem), end; !problem && entry != end; entry.increment(problem)) {
    const std::string number = entry->path().filename();
    std::int64_t process = 0;
    if (std::from_chars(number.data(), number.data() + number.size(), process).ec != std::errc()) continue;
    const std::optional<std::string> arguments = ArgumentsOf(name, ReadKernelFile(entry->path() / "cmdline"));
    if (!arguments) continue;
    const std::int64_t ticks = StartTicksOf(process).value_or(0);  // 0 if it has ended meanwhile
    running.push_back({process, *arguments, SecondsOfBoot() + ticks / sysconf(_SC_CLK_TCK)});
  }
  return running;
}

}  // namespace qmx
