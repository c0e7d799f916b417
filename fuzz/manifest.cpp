// Component manifests: what a plain reader finds, or an error that names the line that it finds wrong. The first line
// is a ProgID that may be claimed, and the folders of $QMX_COMPONENTS. The rest is the manifest.
#include "platform/components/manifest.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "fuzz/input.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "tests/support/temp_folder.h"

namespace qmx::fuzz {
namespace {

std::string Lower(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return text;
}

std::string WithoutBlanks(std::string text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && isBlank(text.back())) text.pop_back();
  while (!text.empty() && isBlank(text.front())) text.erase(0, 1);
  return text;
}

struct PlainManifest {
  std::string library;
  std::vector<std::string> progIds;
  std::vector<Manifest::Setting> settings;
  int wrongLine = -1;  // 0 for the manifest as a whole
};

// Returns whether the line is right.
bool ReadLine(const std::string& line, PlainManifest& manifest) {
  const std::size_t equals = line.find('=');
  if (equals == std::string::npos) return false;
  const std::string key = WithoutBlanks(line.substr(0, equals));
  const std::string value = WithoutBlanks(line.substr(equals + 1));
  if (value.empty()) return false;
  if (Lower(key) == "progid") {
    manifest.progIds.push_back(value);
    return value.find_first_of(" \t,;") == std::string::npos;
  }
  if (Lower(key) == "library") {
    const bool isFirst = manifest.library.empty();
    manifest.library = value;
    return isFirst;
  }
  const std::string word = key.substr(0, key.find_first_of(" \t"));
  const std::string name = WithoutBlanks(key.substr(word.size()));
  manifest.settings.push_back({name, value});
  return Lower(word) == "setting" && !name.empty();
}

PlainManifest ReadPlainly(const std::string& content) {
  PlainManifest manifest;
  std::istringstream lines(content.starts_with("\xEF\xBB\xBF") ? content.substr(3) : content);
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    line = WithoutBlanks(line);
    const bool isRight = line.empty() || line[0] == '#' || ReadLine(line, manifest);
    if (!isRight) manifest.wrongLine = number;
    if (!isRight) return manifest;
  }
  if (manifest.library.empty() || manifest.progIds.empty()) manifest.wrongLine = 0;
  return manifest;
}

std::string PlainClaim(const PlainManifest& manifest, const std::string& progId) {
  for (const std::string& claim : manifest.progIds) {
    if (Lower(claim) == Lower(progId)) return claim;
  }
  for (const std::string& claim : manifest.progIds) {
    if (claim.back() == '*' && Lower(progId).starts_with(Lower(claim.substr(0, claim.size() - 1)))) return claim;
  }
  return "no claim";
}

void ReadsWhatAPlainReaderReads(const std::string& content, const std::string& progId) {
  static const test::TempFolder& folder = *new test::TempFolder(test::TempFolder::Place::InMemory);
  const std::string path = folder / "fuzzed.component";
  test::WriteFile(path, content);
  const PlainManifest expected = ReadPlainly(content);
  Manifest read;
  const std::optional<Error> error = Raised([&] { read = ReadManifest(path); });
  const ManifestFolder found = ReadManifestFolder(folder.Path());
  Require(found.manifests.size() == (error ? 0 : 1) && found.problems.size() == (error ? 1 : 0), "what the folder has");
  Require(error.has_value() == (expected.wrongLine >= 0), "whether this is a manifest: " + Shown(content));
  if (error) {
    const std::string place = expected.wrongLine == 0 ? "" : ", line " + std::to_string(expected.wrongLine);
    Require(error->Number() == errors::kInvalidCall, "an invalid manifest raises 5");
    Require(error->Description().starts_with(path + place + ": "), "the line of " + error->Description());
    return;
  }
  Require(read.library == folder.Path() / expected.library, "the library " + read.library.string());
  Require(read.progIds == expected.progIds && read.settings == expected.settings, "the lines of " + Shown(content));
  for (const std::string& asked : {progId, Lower(expected.progIds[0]), expected.progIds[0] + "x"}) {
    const std::string* const claim = read.Claim(asked);
    RequireSame(claim ? *claim : "no claim", PlainClaim(expected, asked), "the claim of " + Shown(asked));
    Require(read.Claims(asked) == (claim != nullptr), "whether it is claimed");
  }
}

void ListsTheFolders(std::string folders) {
  folders.erase(std::min(folders.find('\0'), folders.size()));
  setenv("QMX_COMPONENTS", folders.c_str(), 1);
  std::istringstream pieces(folders);
  std::vector<std::filesystem::path> expected;
  for (std::string piece; std::getline(pieces, piece, ':');) {
    if (!piece.empty())
      expected.push_back(piece[0] == '/' ? std::filesystem::path(piece) : std::filesystem::current_path() / piece);
  }
  const std::vector<std::filesystem::path> listed = ComponentFolders();
  Require(expected.empty() ? listed.size() == 1 : listed == expected, "the folders of " + Shown(folders));
}

void MissesWhatIsNotThere() {
  Require(NumberRaised([] { ReadManifest("/nowhere/at.component"); }) == errors::kFileNotFound,
          "a missing manifest is 53");
  Require(ReadManifestFolder("/nowhere").problems.size() == 1, "a missing folder is a problem");
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qmx::fuzz::MissesWhatIsNotThere();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  const std::string first = input.Line();
  ReadsWhatAPlainReaderReads(input.Rest(), first);
  ListsTheFolders(first);
  return 0;
}
