#include "tools/qmxadmin/check/check_logs.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

#include "platform/run_records/record_fields.h"
#include "platform/system/paths.h"
#include "platform/system/plain_file.h"
#include "tools/qmxadmin/copied_tables.h"
#include "tools/qmxadmin/system/log_owner.h"
#include "tools/qmxadmin/system/new_files.h"

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
  std::FILE* const file = CreateNewFile(name);
  if (!file) return errno;
  std::fclose(file);
  std::error_code ignored;
  std::filesystem::remove(name, ignored);
  return 0;
}

// Why a copy could not write the file; empty if it can, or if the file does not exist yet.
std::string Obstacle(const std::string& path) {
  std::error_code unknown;
  if (std::filesystem::status(path, unknown).type() == std::filesystem::file_type::not_found) return {};
  const PlainFile file = OpenPlainFile(path, FileUse::Append);
  if (file.stream) return {};
  return file.reason.empty() ? std::string("cannot be written: ") + std::strerror(file.code) : file.reason;
}

void CheckRoom(const std::string& path, FindingSink& findings) {
  std::error_code problem;
  const std::uintmax_t free = std::filesystem::space(path, problem).available;
  if (problem) {
    findings.Wrong(kRoom, fmt::format("the file system of {} cannot be read: {}", path, problem.message()),
                   "Check the file system.");
    return;
  }
  const std::string detail = fmt::format("{} MiB free on the file system of {}", free / kMebibyte, path);
  if (IsEnoughRoom(free)) {
    findings.Good(kRoom, detail);
  } else {
    findings.Wrong(kRoom, detail, "Make room, or the copies cannot write their logs.");
  }
}

void CheckLog(const std::filesystem::path& path, const std::string& folder, FindingSink& findings) {
  const std::string what = "log " + path.filename().string();
  if (const std::string problem = Obstacle(path.string()); !problem.empty()) {
    findings.Wrong(what, "it " + problem, "Give the user that runs the copies write access, or move it away.");
  } else if (const std::string owner = WrongOwner(path.string(), folder); !owner.empty()) {
    findings.Wrong(what, owner, "Change its owner to the user that runs the copies.");
  }
}

}  // namespace

void CheckLogs(const std::string& folder, FindingSink& findings) {
  const std::string path = NativePath(folder);
  std::error_code unknown;
  if (!std::filesystem::is_directory(path, unknown)) {
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
    CheckLog(std::filesystem::path(path) / name, path, findings);
  }
}

bool IsEnoughRoom(std::uintmax_t freeBytes) { return freeBytes >= 16 * kMebibyte; }

}  // namespace qmx
