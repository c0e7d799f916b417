// Lists a folder. The iterator of std::filesystem would end the program if there is no memory (libstdc++ 12).
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace qmx {

// Adds the paths of the folder's entries with that extension (".component"), in any order. Returns an errno value, or 0
// if all were listed.
int ListFolder(const std::filesystem::path& folder, std::string_view extension,
               std::vector<std::filesystem::path>& files);

}  // namespace qmx
