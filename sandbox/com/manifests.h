// The component servers whose manifests (*.component) are in a folder.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvan {

struct ServedLibrary {
  std::filesystem::path library;
  std::vector<std::string> progIds;
};

// Skips manifests without a library, and ProgIDs that are patterns.
std::vector<ServedLibrary> ReadManifests(const std::filesystem::path& folder);

}  // namespace orvan
