// Libraries that are loaded while the program runs, and are never unloaded.
#pragma once

#include <filesystem>
#include <string>

namespace qmx {

struct SharedLibrary {
  void* handle = nullptr;  // the same for every path of one file; null if it cannot be loaded
  std::string problem;     // the system's own message if it cannot be loaded
};

// Resolves all symbols at once, and keeps the library's own to itself.
SharedLibrary LoadSharedLibrary(const std::filesystem::path& path);

// Null if the library has no such symbol.
void* FindSymbol(void* library, const char* name);

}  // namespace qmx
