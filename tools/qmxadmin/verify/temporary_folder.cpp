#include "tools/qmxadmin/verify/temporary_folder.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "platform/error.h"
#include "tools/qmxadmin/system/new_files.h"

namespace qmx {

TemporaryFolder::TemporaryFolder() {
  std::string pattern = TemporaryFiles() + "/qmxadmin-XXXXXX";
  if (!CreateNewFolder(pattern)) {
    const std::string reason = std::strerror(errno);
    throw Error(errors::kPathFileAccess, "qmxadmin",
                fmt::format("The temporary folder {} cannot be created: {}.", pattern, reason));
  }
  path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace qmx
