#include "platform/system/shared_library.h"

#include <dlfcn.h>

namespace qmx {

SharedLibrary LoadSharedLibrary(const std::filesystem::path& path) {
  if (void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) return {handle, {}};
  return {nullptr, dlerror()};
}

void* FindSymbol(void* library, const char* name) { return dlsym(library, name); }

}  // namespace qmx
