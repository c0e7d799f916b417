// A manifest: which library serves which ProgIDs, so that a library is loaded only when it is asked for.
//
// A file *.component of simple lines: "library = FILE" once, relative to the manifest's own folder, and "progid = X" at
// least once, each with one ProgID. A ProgID that ends in "*" claims every ProgID that begins with what stands before.
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
  std::vector<Setting> settings;  // in the order of their lines; a name may come again

  bool Claims(std::string_view progId) const { return Claim(progId) != nullptr; }

  // The entry of progIds that claims it, one without "*" first; null for none. Borrowed from this.
  const std::string* Claim(std::string_view progId) const;
};

// Whether the entry of a manifest stands for all ProgIDs that begin as it does.
inline bool IsPattern(std::string_view claim) { return claim.ends_with('*'); }

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
