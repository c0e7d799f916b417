// Where files that are installed with the program are.
//
// On a POSIX system the build knows their whole path. On Windows the program is unpacked anywhere, so a relative path
// is beside the program.
#pragma once

#include <filesystem>

namespace qmx {

std::filesystem::path InstalledPath(const std::filesystem::path& path);

}  // namespace qmx
