#include "platform/system/shared_library.h"

#include <windows.h>

#include "platform/windows/system_codes.h"

namespace qmx {

// The libraries that it needs are looked for in its own folder first, for which Windows asks for an absolute path.
SharedLibrary LoadSharedLibrary(const std::filesystem::path& path) {
  std::filesystem::path native = path;
  native.make_preferred();  // Windows compares paths with "\" only
  std::error_code ignored;  // an empty path is refused by Windows
  const std::filesystem::path whole = std::filesystem::absolute(native, ignored);
  if (void* const handle = LoadLibraryExW(whole.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) return {handle, {}};
  const DWORD code = GetLastError();
  return {nullptr, native.string() + ": " + SystemMessage(code)};
}

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

}  // namespace qmx
