#include <windows.h>

#include "tests/support/second_process.h"

namespace qmx::test {

std::filesystem::path OwnProgram() {
  std::wstring path(32768, L'\0');  // the longest path
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace qmx::test
