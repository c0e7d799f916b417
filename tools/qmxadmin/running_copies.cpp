#include "tools/qmxadmin/running_copies.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <sstream>

#include "platform/names.h"
#include "platform/posix/clock.h"
#include "platform/run_records/kernel_file.h"
#include "platform/run_records/process_identity.h"
#include "platform/trim.h"

namespace qmx {
namespace {

namespace fs = std::filesystem;

// Returns the first three pieces of a command line of qmxdatacopy (connection, database, table), or nothing if it is
// another program's. Arguments are joined by blanks and split at commas.
std::vector<std::string> PiecesOf(std::string commandLine) {
  const std::size_t end = std::min(commandLine.find('\0'), commandLine.size());
  if (fs::path(commandLine.substr(0, end)).filename() != "qmxdatacopy") return {};
  commandLine.erase(0, std::min(end + 1, commandLine.size()));
  std::replace(commandLine.begin(), commandLine.end(), '\0', ' ');
  std::istringstream text(commandLine);
  std::vector<std::string> pieces;
  for (std::string piece; pieces.size() < 3 && std::getline(text, piece, ',');) pieces.emplace_back(Trimmed(piece));
  return pieces.size() == 3 ? pieces : std::vector<std::string>();
}

std::string TableOf(const std::vector<std::string>& pieces) {
  return pieces.empty() ? "" : FoldName(pieces[2].substr(0, pieces[2].find('=')));
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

std::vector<RunningCopy> RunningCopiesOf(const std::string& tableCode) {
  std::vector<RunningCopy> copies;
  std::error_code problem;
  for (fs::directory_iterator entry("/proc", problem), end; !problem && entry != end; entry.increment(problem)) {
    const std::string name = entry->path().filename();
    pid_t process = 0;
    if (std::from_chars(name.data(), name.data() + name.size(), process).ec != std::errc()) continue;
    const std::vector<std::string> pieces = PiecesOf(ReadKernelFile(entry->path() / "cmdline"));
    if (TableOf(pieces) != FoldName(tableCode)) continue;
    const std::int64_t ticks = StartTicksOf(process).value_or(0);  // 0 if it has ended meanwhile
    copies.push_back({process, pieces[0], pieces[1], LocalTime(SecondsOfBoot() + ticks / sysconf(_SC_CLK_TCK))});
  }
  return copies;
}

}  // namespace qmx
