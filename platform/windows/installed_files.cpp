#include "platform/system/installed_files.h"

#include "platform/windows/own_path.h"

namespace qmx {

std::filesystem::path InstalledPath(const std::filesystem::path& path) { return OwnPath().parent_path() / path; }

}  // namespace qmx
