#include "tools/qmxadmin/verify/temporary_folder.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/error.h"

namespace qmx {

TemporaryFolder::TemporaryFolder() {
  const char* const variable = std::getenv("TMPDIR");
  std::string pattern = std::string(variable && *variable ? variable : "/tmp") + "/qmxadmin-XXXXXX";
  if (!mkdtemp(pattern.data())) {
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
