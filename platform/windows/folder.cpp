#include "platform/system/folder.h"

#include <windows.h>

#include <memory>

#include "platform/windows/system_codes.h"

namespace qmx {

int ListFolder(const std::filesystem::path& folder, std::string_view extension,
               std::vector<std::filesystem::path>& files) {
  struct Closer {
    void operator()(void* open) const { FindClose(open); }
  };
  WIN32_FIND_DATAW entry{};
  const HANDLE first = FindFirstFileW((folder / L"*").c_str(), &entry);
  if (first == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_NOT_FOUND) return 0;  // the empty root of a drive
  if (first == INVALID_HANDLE_VALUE) return LastErrno();
  const std::unique_ptr<void, Closer> open(first);
  do {
    const std::filesystem::path name = entry.cFileName;
    if (name.extension() == extension) files.push_back(folder / name);
  } while (FindNextFileW(first, &entry));
  return GetLastError() == ERROR_NO_MORE_FILES ? 0 : LastErrno();
}

}  // namespace qmx
