// Where this program is.
#pragma once

#include <filesystem>

namespace qmx {

std::filesystem::path OwnPath();  // empty if Windows does not say

}  // namespace qmx
