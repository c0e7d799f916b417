// A manifest: which library serves which ProgIDs, so that a library is loaded only when it is needed.
//
// A file *.component of simple lines: "library = FILE" once, relative to the manifest's own folder, and "progid = X" at
// least once, each with one ProgID. A ProgID that ends in "*" claims every ProgID that begins with the text before it.
// "setting NAME = VALUE", any number of times, is for the library. Blanks around, empty lines, lines that begin with
// "#" and a byte-order mark at the beginning of the file don't count.
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

  struct Setting {
    std::string name, value;
    friend bool operator==(const Setting&, const Setting&) = default;
  };
  std::vector<Setting> settings;  // in the order of their lines; a name may be repeated

  bool Claims(std::string_view progId) const { return Claim(progId) != nullptr; }

  // Returns the entry of progIds that claims it, preferring one without "*"; null for none. Borrowed from this.
  const std::string* Claim(std::string_view progId) const;
};

// Whether a manifest's entry ends in "*".
inline bool IsPattern(std::string_view claim) { return claim.ends_with('*'); }

// Raises 5 for an invalid line, with file and line, and 53 if the file cannot be read.
Manifest ReadManifest(const std::filesystem::path& path);

// The valid manifests of a folder, by file name, and the problems of the others.
struct ManifestFolder {
  std::filesystem::path path;
  std::vector<Manifest> manifests;
  std::vector<std::string> problems;  // of the folder or a manifest, as sentences without a full stop
};
ManifestFolder ReadManifestFolder(const std::filesystem::path& path);

// Returns the folders to search: those of $QMX_COMPONENTS, separated by ":" (";" where ":" is a part of
// paths), else the installed one.
std::vector<std::filesystem::path> ComponentFolders();

}  // namespace qmx
