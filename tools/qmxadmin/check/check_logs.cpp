#include "tools/qmxadmin/check/check_logs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

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

// Errno of the failure; 0 where it can be written or is not there yet.
int OpenToAppend(const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  if (file < 0) return errno == ENOENT ? 0 : errno;
  close(file);
  return 0;
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
                   "Let the user that runs the copies write there.");
    return;
  }
  findings.Good(kFolder, path + " can be written");
  for (const std::string& name : LogNames()) {
    if (const int problem = OpenToAppend(std::filesystem::path(path) / name)) {
      findings.Wrong("log " + name, std::string("it cannot be written: ") + std::strerror(problem),
                     "Let the user that runs the copies write it, or move it away.");
    }
  }
}

}  // namespace qmx
