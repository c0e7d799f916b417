#include "platform/system/shared_library.h"

#include <windows.h>

#include "platform/windows/system_codes.h"

namespace qmx {

// The libraries that it needs are looked for in its own folder first.
SharedLibrary LoadSharedLibrary(const std::filesystem::path& path) {
  std::filesystem::path native = path;
  native.make_preferred();  // Windows compares paths with "\" only
  if (void* const handle = LoadLibraryExW(native.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) return {handle, {}};
  const DWORD code = GetLastError();
  return {nullptr, native.string() + ": " + SystemMessage(code)};
}

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

}  // namespace qmx
