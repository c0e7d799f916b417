#include "platform/components/manifest.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/system/environment.h"
#include "platform/system/folder.h"
#include "platform/system/installed_files.h"
#include "platform/text_lines.h"
#include "platform/trim.h"

namespace qmx {
namespace {

constexpr std::string_view kBlanks = TextLines::kBlanks;

// Returns the name in "setting NAME"; nothing for another word.
std::optional<std::string_view> SettingName(std::string_view key) {
  const std::string_view word = key.substr(0, key.find_first_of(" \t"));
  if (!SameName(word, "setting")) return {};
  return Trimmed(key.substr(word.size()), kBlanks);
}

}  // namespace

const std::string* Manifest::Claim(std::string_view progId) const {
  const auto same = [&](const std::string& claim) { return SameName(claim, progId); };
  const auto begins = [&](const std::string& claim) {
    const std::string_view start = std::string_view(claim).substr(0, claim.size() - 1);
    return IsPattern(claim) && SameName(start, progId.substr(0, start.size()));
  };
  auto found = std::find_if(progIds.begin(), progIds.end(), same);
  if (found == progIds.end()) found = std::find_if(progIds.begin(), progIds.end(), begins);
  return found == progIds.end() ? nullptr : &*found;
}

Manifest ReadManifest(const std::filesystem::path& path) {
  const auto failAt = [&](const std::string& place, const std::string& what) {
    throw Error(errors::kInvalidCall, "Components", place + ": " + what).With("manifest", path.string());
  };

  Manifest manifest{path, {}, {}, {}};
  TextLines lines(path);
  const auto fail = [&](const std::string& what) {
    failAt(path.string() + ", line " + std::to_string(lines.Number()), what);
  };
  while (lines.Next()) {
    if (lines.IsUtf16()) fail(TextLines::kIsUtf16);
    const std::string_view text = lines.Line();
    if (text.empty() || text.front() == '#') continue;
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) fail("\"library = FILE\" or \"progid = NAME\" expected");
    const std::string_view key = Trimmed(text.substr(0, equals), kBlanks);
    const std::string_view value = Trimmed(text.substr(equals + 1), kBlanks);
    if (value.empty()) fail("the value after \"=\" is missing");
    if (SameName(key, "progid")) {
      if (value.find_first_of(" \t,;") != std::string_view::npos) {
        fail("\"" + std::string(value) + "\" is no single identifier; write a line \"progid = NAME\" for each");
      }
      manifest.progIds.emplace_back(value);
    } else if (const auto setting = SettingName(key)) {
      if (setting->empty()) fail("a setting has no name; \"setting NAME = VALUE\" expected");
      manifest.settings.push_back({std::string(*setting), std::string(value)});
    } else if (!SameName(key, "library")) {
      fail("unknown word \"" + std::string(key) + "\"; \"library\", \"progid\" and \"setting NAME\" are known");
    } else if (!manifest.library.empty()) {
      fail("a second library; a manifest names one");
    } else {
      manifest.library = path.parent_path() / value;
    }
  }
  if (!lines.IsAtEnd()) {
    throw Error(errors::kFileNotFound, "Components", path.string() + ": cannot be read")
        .With("manifest", path.string());
  }
  if (manifest.library.empty()) failAt(path.string(), "no line \"library = FILE\"");
  if (manifest.progIds.empty()) failAt(path.string(), "no line \"progid = NAME\"");
  return manifest;
}

ManifestFolder ReadManifestFolder(const std::filesystem::path& path) {
  ManifestFolder folder{path, {}, {}};
  std::vector<std::filesystem::path> files;
  if (const int code = ListFolder(path, ".component", files))
    folder.problems.push_back(path.string() + ": " + std::generic_category().message(code));
  std::sort(files.begin(), files.end());
  for (const std::filesystem::path& file : files) {
    try {
      folder.manifests.push_back(ReadManifest(file));
    } catch (const Error& error) {
      folder.problems.push_back(error.Description());
    }
  }
  return folder;
}

std::vector<std::filesystem::path> ComponentFolders() {
  const std::string variable = EnvironmentVariable("QMX_COMPONENTS").value_or("");
  std::vector<std::filesystem::path> folders;
  std::string_view rest = variable;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(kSearchPathSeparator), rest.size());
    if (end > 0) folders.push_back(std::filesystem::absolute(rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (folders.empty()) folders.push_back(InstalledPath(QMX_INSTALLED_COMPONENT_DIR));
  return folders;
}

}  // namespace qmx
