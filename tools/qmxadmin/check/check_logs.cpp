#include "tools/qmxadmin/check/check_logs.h"

#include <fmt/format.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "platform/run_records/record_fields.h"
#include "platform/system/paths.h"
#include "platform/system/plain_file.h"
#include "tools/qmxadmin/copied_tables.h"

namespace qmx {
namespace {

constexpr const char* kFolder = "log folder";
constexpr const char* kRoom = "room for logs";
constexpr std::uintmax_t kMebibyte = 1024 * 1024;

std::vector<std::string> LogNames() {
  std::vector<std::string> names = {"QMXDBSynclog.txt", "evtlog.txt", run_records::kFileName};
  for (const LocalTable& table : CopiedTables()) names.push_back(table.name + ".log");
  return names;
}

// Creates and removes a file, which proves that the copies can create theirs. Returns the errno of a failure, or 0.
int TryToCreateAFile(const std::string& folder) {
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

std::string UserName(uid_t user) {
  const passwd* const entry = getpwuid(user);
  return entry ? entry->pw_name : fmt::format("user {}", user);
}

// Returns why the log belongs to the wrong user, or an empty text. The copies' user is the one that runs this check.
// For root it is the owner of the folder.
std::string WrongOwner(const std::string& path, uid_t folderOwner) {
  struct stat state {};
  if (stat(path.c_str(), &state) != 0) return {};
  const uid_t expected = geteuid() == 0 ? folderOwner : geteuid();
  if (state.st_uid == expected) return {};
  return fmt::format("it belongs to {}, not to {}", UserName(state.st_uid), UserName(expected));
}

void CheckRoom(const std::string& path, FindingSink& findings) {
  struct statvfs system {};
  if (statvfs(path.c_str(), &system) != 0) {
    findings.Wrong(kRoom, fmt::format("the file system of {} cannot be read: {}", path, std::strerror(errno)),
                   "Check the file system.");
    return;
  }
  const std::uintmax_t free = std::uintmax_t{system.f_bavail} * system.f_frsize;
  const std::string detail = fmt::format("{} MiB free on the file system of {}", free / kMebibyte, path);
  if (IsEnoughRoom(free)) {
    findings.Good(kRoom, detail);
  } else {
    findings.Wrong(kRoom, detail, "Make room, or the copies cannot write their logs.");
  }
}

void CheckLog(const std::filesystem::path& path, uid_t folderOwner, FindingSink& findings) {
  const std::string what = "log " + path.filename().string();
  if (const std::string problem = Obstacle(path); !problem.empty()) {
    findings.Wrong(what, "it " + problem, "Give the user that runs the copies write access, or move it away.");
  } else if (const std::string owner = WrongOwner(path, folderOwner); !owner.empty()) {
    findings.Wrong(what, owner, "Change its owner to the user that runs the copies.");
  }
}

}  // namespace

void CheckLogs(const std::string& folder, FindingSink& findings) {
  const std::string path = NativePath(folder);
  struct stat state {};
  if (stat(path.c_str(), &state) != 0 || !S_ISDIR(state.st_mode)) {
    findings.Wrong(kFolder, fmt::format("there is no folder {}", path), "Create it or name another folder.");
    return;
  }
  if (const int problem = TryToCreateAFile(path)) {
    findings.Wrong(kFolder, fmt::format("no file can be created in {}: {}", path, std::strerror(problem)),
                   problem == EROFS ? "Mount its file system for writing or name another folder."
                                    : "Give the user that runs the copies write access.");
    return;
  }
  findings.Good(kFolder, fmt::format("{} can be written", path));
  CheckRoom(path, findings);
  for (const std::string& name : LogNames()) {
    CheckLog(std::filesystem::path(path) / name, state.st_uid, findings);
  }
}

bool IsEnoughRoom(std::uintmax_t freeBytes) { return freeBytes >= 16 * kMebibyte; }

}  // namespace qmx
