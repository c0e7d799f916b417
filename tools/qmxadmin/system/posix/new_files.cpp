#include "tools/qmxadmin/system/new_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/system/environment.h"

namespace qmx {

std::FILE* CreateNewFile(std::string& path) {
  const int descriptor = mkostemp(path.data(), O_CLOEXEC);
  return descriptor < 0 ? nullptr : fdopen(descriptor, "w");
}

bool LetEverybodyRead(std::FILE* file) { return fchmod(fileno(file), 0644) == 0; }

bool CreateNewFolder(std::string& path) { return mkdtemp(path.data()) != nullptr; }

std::string TemporaryFiles() {
  const std::string folder = EnvironmentVariable("TMPDIR").value_or("");
  return folder.empty() ? "/tmp" : folder;
}

}  // namespace qmx
