#include "platform/system/installed_files.h"

namespace qmx {

std::filesystem::path InstalledPath(const std::filesystem::path& path) { return path; }

}  // namespace qmx
