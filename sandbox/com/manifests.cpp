#include "com/manifests.h"

#include <fstream>
#include <string_view>

namespace orvan {
namespace {

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \t\r") - first + 1));
}

ServedLibrary ReadManifest(const std::filesystem::path& path) {
  ServedLibrary served;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos || Trimmed(line).starts_with('#')) continue;
    const std::string key = Trimmed(std::string_view(line).substr(0, equals));
    const std::string value = Trimmed(std::string_view(line).substr(equals + 1));
    if (key == "library") served.library = path.parent_path() / value;
    if (key == "progid" && !value.ends_with('*')) served.progIds.push_back(value);
  }
  return served;
}

}  // namespace

std::vector<ServedLibrary> ReadManifests(const std::filesystem::path& folder) {
  std::vector<ServedLibrary> all;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".component") continue;
    ServedLibrary served = ReadManifest(entry.path());
    if (!served.library.empty()) all.push_back(std::move(served));
  }
  return all;
}

}  // namespace orvan
