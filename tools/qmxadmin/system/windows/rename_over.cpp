#include "tools/qmxadmin/system/rename_over.h"

#include <windows.h>

#include <filesystem>

#include "platform/windows/system_codes.h"

namespace qmx {

std::string RenameOver(const std::string& from, const std::string& to, std::chrono::milliseconds patience) {
  constexpr DWORD kPause = 20;
  const std::filesystem::path source = from, target = to;
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    if (MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) return {};
    const DWORD code = GetLastError();
    const bool maybeOpen = code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION;
    if (!maybeOpen) return SystemMessage(code);
    if (std::chrono::steady_clock::now() >= end) return "another program may have it open: " + SystemMessage(code);
    Sleep(kPause);
  }
}

}  // namespace qmx
