#include "platform/windows/own_path.h"

#include <windows.h>

namespace qmx {

std::filesystem::path OwnPath() {
  std::wstring path(32768, L'\0');  // the longest path
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace qmx
