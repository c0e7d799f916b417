#include "platform/system/plain_file.h"

#include <cerrno>

#include "platform/windows/file_form.h"
#include "platform/windows/file_owner.h"
#include "platform/windows/file_stream.h"
#include "platform/windows/handle.h"
#include "platform/windows/plain_file_calls.h"
#include "platform/windows/system_codes.h"
#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

constexpr DWORD kBetweenAttempts = 25;  // milliseconds
constexpr int kMostAttempts = 41;

PlainFile Refused(int code, std::string reason = {}) { return {nullptr, -1, code, std::move(reason)}; }

// Appending alone, without the right to write anywhere else, makes each write an append in one step.
HANDLE OpenOnce(const std::wstring& path, FileUse use, DWORD flags) {
  const bool reads = use == FileUse::Input;
  return CreateFileW(path.c_str(), reads ? GENERIC_READ : FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                     reads ? OPEN_EXISTING : OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | flags, nullptr);
}

// Scanners and backups hold a file for a moment without sharing it.
HANDLE Open(const std::wstring& path, FileUse use, DWORD flags) {
  HANDLE file = OpenOnce(path, use, flags);
  for (int i = 1; i < kMostAttempts && file == INVALID_HANDLE_VALUE; ++i) {
    if (GetLastError() != ERROR_SHARING_VIOLATION) break;
    plainFileCalls.pause(kBetweenAttempts);
    file = OpenOnce(path, use, flags);
  }
  return file;
}

// Windows refuses to open a folder with "access denied".
PlainFile RefusedBy(DWORD code, const std::wstring& path) {
  if (code == ERROR_SHARING_VIOLATION) return Refused(EACCES, "is open in another program, which does not share it");
  const DWORD attributes = GetFileAttributesW(path.c_str());
  const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return Refused(isFolder ? EISDIR : ErrnoOf(code));
}

// A file whose form Windows does not know is a plain one.
FileForm FormOfOpened(HANDLE file) {
  FILE_ATTRIBUTE_TAG_INFO information{};
  const bool isKnown = GetFileInformationByHandleEx(file, FileAttributeTagInfo, &information, sizeof information);
  return isKnown ? FormOf(information.FileAttributes, information.ReparseTag) : FileForm::Plain;
}

PlainFile Opened(Handle& file, FileUse use) {
  switch (GetFileType(file.Get())) {
    case FILE_TYPE_DISK:
      break;
    case FILE_TYPE_PIPE:
      return Refused(EINVAL, "is a named pipe, not a regular file");
    default:
      return Refused(EINVAL, "is a device, not a regular file");
  }
  std::FILE* const stream = StreamOver(file, use == FileUse::Input ? "rb" : "wb");
  if (!stream) return Refused(errno);
  return {std::unique_ptr<std::FILE, PlainFile::CloseStream>(stream), _fileno(stream), 0, {}};
}

// Asked through a handle of its own, because one that appends may not ask for the owner.
std::string StrangeOwnerOfLink(const std::wstring& path) {
  const Handle link(CreateFileW(path.c_str(), READ_CONTROL, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  return StrangeOwner(link.Get());
}

}  // namespace

PlainFileCalls plainFileCalls = {FormOfOpened, Sleep};

PlainFile OpenPlainFile(const std::string& path, FileUse use) {
  const std::wstring wide = WideText(path);
  Handle asItIs(Open(wide, use, FILE_FLAG_OPEN_REPARSE_POINT));
  if (!asItIs) return RefusedBy(GetLastError(), wide);
  const FileForm form = plainFileCalls.formOf(asItIs.Get());
  if (form == FileForm::Plain) return Opened(asItIs, use);
  const std::string owner = form == FileForm::Link ? StrangeOwnerOfLink(wide) : "";
  if (!owner.empty()) {
    return Refused(EACCES, "is a symbolic link of the user " + owner +
                               "; only links of administrators and of the program's own user are followed");
  }
  Handle target(Open(wide, use, 0));
  return target ? Opened(target, use) : RefusedBy(GetLastError(), wide);
}

}  // namespace qmx
