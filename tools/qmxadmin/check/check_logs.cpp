#include "tools/qmxadmin/check/check_logs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "platform/plain_file.h"
#include "platform/posix/paths.h"
#include "tools/qmxadmin/copied_tables.h"

namespace qmx {
namespace {

constexpr const char* kFolder = "log folder";

std::vector<std::string> LogNames() {
  std::vector<std::string> names = {"QMXDBSynclog.txt", "evtlog.txt"};
  for (const LocalTable& table : CopiedTables()) names.push_back(table.name + ".log");
  return names;
}

// Only a file that was really made proves that the copies can make theirs. Errno of the failure, 0 for none.
int MakeAFile(const std::string& folder) {
  std::string name = folder + "/.qmxadmin-XXXXXX";
  const int file = mkstemp(name.data());
  if (file < 0) return errno;
  close(file);
  unlink(name.c_str());
  return 0;
}

// Why a copy could not write the file; empty if it can, or if the file does not exist yet.
std::string Obstacle(const std::string& path) {
  if (access(path.c_str(), F_OK) != 0 && errno == ENOENT) return {};
  const PlainFile file = OpenPlainFile(path, FileUse::Append);
  if (file.stream) return {};
  return file.reason.empty() ? std::string("cannot be written: ") + std::strerror(file.code) : file.reason;
}

}  // namespace

void CheckLogs(const std::string& folder, Findings& findings) {
  const std::string path = NativePath(folder);
  struct stat state {};
  if (stat(path.c_str(), &state) != 0 || !S_ISDIR(state.st_mode)) {
    findings.Wrong(kFolder, "there is no folder " + path, "Make it, or name another one.");
    return;
  }
  if (const int problem = MakeAFile(path)) {
    findings.Wrong(kFolder, "no file can be made in " + path + ": " + std::strerror(problem),
                   problem == EROFS ? "Mount its file system for writing, or name another folder."
                                    : "Let the user that runs the copies write there.");
    return;
  }
  findings.Good(kFolder, path + " can be written");
  for (const std::string& name : LogNames()) {
    if (const std::string problem = Obstacle(std::filesystem::path(path) / name); !problem.empty()) {
      findings.Wrong("log " + name, "it " + problem, "Let the user that runs the copies write it, or move it away.");
    }
  }
}

}  // namespace qmx
