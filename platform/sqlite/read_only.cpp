#include "platform/sqlite/read_only.h"

#include <cerrno>
#include <fstream>
#include <string>

#include "platform/system/access.h"

namespace qmx {
namespace {

namespace fs = std::filesystem;

constexpr int kFormatVersions = 18;  // the place in the file's header of two bytes, which are 2 in WAL mode

bool IsInWalMode(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  in.seekg(kFormatVersions);
  return in.get() == 2 && in.get() == 2;
}

bool IsOnReadOnlyDisk(const fs::path& file) { return AccessProblem(file.string(), FileRight::Write) == EROFS; }

Error Refused(const fs::path& file, const std::string& why) {
  return Error(errors::kPermissionDenied, "SQLite",
               "The database " + file.string() + " cannot be read without the right to write: " + why)
      .With("file", file.string());
}

std::string WhatToDo(const fs::path& file) {
  return IsOnReadOnlyDisk(file) ? " Copy the database and the files beside it to another file system first."
                                : " Run the command as the user that runs the copies.";
}

}  // namespace

Error ReadOnlyError(const fs::path& file) {
  return Error(errors::kPermissionDenied, "SQLite",
               "The database " + file.string() + " cannot be written: " +
                   (IsOnReadOnlyDisk(file) ? "its file system is read-only." : "permission is missing on the file."))
      .With("file", file.string());
}

void RequireReadableWithoutWriting(const fs::path& file) {
  if (!IsInWalMode(file)) return;
  for (const char* suffix : {"-wal", "-shm"}) {
    const std::string beside = file.string() + suffix;
    const int problem = AccessProblem(beside, FileRight::Read);
    if (problem == 0) continue;
    throw Refused(file, (problem == ENOENT ? "it is in WAL mode and no program has it open, so SQLite must create "
                                           : "it is in WAL mode, and permission to read is missing on ") +
                            beside + "." + WhatToDo(file));
  }
}

Error UnfinishedTransactionError(const fs::path& file) {
  return Refused(file,
                 "a program that was killed left an unfinished transaction, which SQLite must undo." + WhatToDo(file));
}

}  // namespace qmx
