#include "platform/system/system_errors.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/error.h"

namespace qmx {
namespace {

bool FolderExists(const std::string& nativePath) {
  const std::filesystem::path folder = std::filesystem::path(nativePath).parent_path();
  std::error_code ignored;
  return std::filesystem::is_directory(folder.empty() ? "." : folder, ignored);
}

std::int32_t NumberOf(int code, const std::string& nativePath) {
  switch (code) {
    case ENOENT:
      return FolderExists(nativePath) ? errors::kFileNotFound : errors::kPathNotFound;
    case ENOTDIR:
      return errors::kPathNotFound;
    case EACCES:
    case EPERM:
    case ETXTBSY:
      return errors::kPermissionDenied;
    case EISDIR:
    case EROFS:
    case ELOOP:
    case ENAMETOOLONG:
    case EINVAL:
      return errors::kPathFileAccess;
    default:
      return MeansFullDisk(code) ? errors::kDiskFull : errors::kDeviceIo;
  }
}

const char* Headline(std::int32_t number) {
  switch (number) {
    case errors::kFileNotFound:
      return "File not found";
    case errors::kPathNotFound:
      return "Path not found";
    case errors::kPermissionDenied:
      return "Permission denied";
    case errors::kPathFileAccess:
      return "Path/file access error";
    case errors::kDiskFull:
      return "Disk full";
    default:
      return "Device I/O error";
  }
}

}  // namespace

void RaiseSystemError(int code, const std::string& source, const std::string& nativePath, const std::string& reason) {
  const std::int32_t number = NumberOf(code, nativePath);
  const std::string what = std::string(Headline(number)) + ": " + nativePath;
  if (!reason.empty()) throw Error(number, source, what + " " + reason);
  throw Error(number, source, what).With("system", std::generic_category().message(code));
}

}  // namespace qmx
