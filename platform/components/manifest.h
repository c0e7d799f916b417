// A manifest: which library serves which ProgIDs, so that a library is loaded only when it is asked for.
//
// A file *.component of simple lines: "library = FILE" once, relative to the manifest's own folder, and "progid = X" at
// least once, each with one ProgID. Blanks around, empty lines, lines that begin with "#" and a byte-order mark at the
// beginning of the file don't count.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace qmx {

struct Manifest {
  std::filesystem::path path;
  std::filesystem::path library;  // absolute when the manifest's path is
  std::vector<std::string> progIds;

  bool Claims(std::string_view progId) const;
};

// Raises 5 for a line that means nothing, with file and line; 53 when the file cannot be read.
Manifest ReadManifest(const std::filesystem::path& path);

// The manifests of a folder, by file name, and what was wrong with the others.
struct ManifestFolder {
  std::filesystem::path path;
  std::vector<Manifest> manifests;
  std::vector<std::string>
      problems;  // sentences without a full stop: what is wrong with the folder or a manifest in it
};
ManifestFolder ReadManifestFolder(const std::filesystem::path& path);

// The folders to look in: those of $QMX_COMPONENTS, between ":", else the one of the installation.
std::vector<std::filesystem::path> ComponentFolders();

}  // namespace qmx
