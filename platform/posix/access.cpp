#include "platform/system/access.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace qmx {

int AccessProblem(const std::string& nativePath, FileRight right) {
  const int mode = right == FileRight::Read ? R_OK : W_OK;
  return faccessat(AT_FDCWD, nativePath.c_str(), mode, AT_EACCESS) == 0 ? 0 : errno;
}

int FolderAccessProblem(const std::string& nativePath) {
  return access(nativePath.c_str(), W_OK | X_OK) == 0 ? 0 : errno;
}

}  // namespace qmx
