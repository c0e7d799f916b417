#include "platform/windows/system_codes.h"

#include <windows.h>

#include <cerrno>

#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

constexpr DWORD kDiskQuotaExceeded = 1295;  // not in mingw's headers

}  // namespace

int ErrnoOf(std::uint32_t code) noexcept {
  switch (code) {
    case ERROR_SUCCESS:
      return 0;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return EACCES;
    case ERROR_WRITE_PROTECT:
      return EROFS;
    case ERROR_DIRECTORY:
      return ENOTDIR;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
      return ENOSPC;
    case ERROR_FILE_TOO_LARGE:
      return EFBIG;
    case ERROR_FILENAME_EXCED_RANGE:
      return ENAMETOOLONG;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_PARAMETER:
      return EINVAL;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ENOMEM;
    case ERROR_TOO_MANY_OPEN_FILES:
      return EMFILE;
    case ERROR_INVALID_HANDLE:
      return EBADF;
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
      return EPIPE;
    case ERROR_CANT_RESOLVE_FILENAME:
      return ELOOP;
    default:
      return EIO;
  }
}

int LastErrno() noexcept { return ErrnoOf(GetLastError()); }

std::string SystemMessage(std::uint32_t code) {
  wchar_t* text = nullptr;
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                     nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::string message = length ? NarrowText({text, length}) : "Windows has no text for this error.";
  LocalFree(text);
  message.erase(message.find_last_not_of("\r\n ") + 1);
  return message + " (" + std::to_string(code) + ")";
}

}  // namespace qmx
