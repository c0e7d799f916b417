#include "settings.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "failure.h"

namespace java_bridge {
namespace {

namespace fs = std::filesystem;

std::string Lower(std::string_view name) {
  std::string lower(name);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

// Returns the jars of "FOLDER/*", sorted by name so that the classpath is the same on every machine.
void AddJars(const fs::path& folder, std::vector<std::string>& paths) {
  std::vector<std::string> jars;
  std::error_code problem;
  for (fs::directory_iterator file(folder, problem), end; !problem && file != end; file.increment(problem)) {
    const std::string ending = file->path().extension();
    if (ending == ".jar" || ending == ".JAR") jars.push_back(file->path());
  }
  std::sort(jars.begin(), jars.end());
  paths.insert(paths.end(), jars.begin(), jars.end());
}

void AddClasspath(const fs::path& folder, std::string_view text, std::vector<std::string>& paths) {
  while (!text.empty()) {
    const std::size_t colon = std::min(text.find(':'), text.size());
    const fs::path path = (folder / text.substr(0, colon)).lexically_normal();
    if (path.filename() == "*") {
      AddJars(path.parent_path(), paths);
    } else if (colon > 0) {
      paths.push_back(path);
    }
    text.remove_prefix(std::min(colon + 1, text.size()));
  }
}

}  // namespace

Settings ReadSettings(const qmx_manifest& manifest) {
  Settings settings;
  settings.manifest.assign(manifest.path, manifest.path_length);
  const fs::path folder = fs::path(settings.manifest).parent_path();
  bool hasClasspath = false;
  for (std::size_t i = 0; i < manifest.setting_count; ++i) {
    const qmx_setting& setting = *manifest.settings[i];
    const std::string name(setting.name, setting.name_length);
    const std::string value(setting.value, setting.value_length);
    const std::string key = Lower(name);
    if (key == "classpath") {
      AddClasspath(folder, value, settings.classpath);
      hasClasspath = true;
    } else if (key == "option") {
      settings.options.push_back(value);
    } else if (key == "jvm") {
      settings.jvm = (folder / value).lexically_normal();
    } else if (key.starts_with("class ") || key.starts_with("class\t")) {
      settings.classes.emplace_back(name.substr(name.find_first_not_of(" \t", 5)), value);
    } else {
      throw Failure{QMX_E_CANNOT_CREATE,
                    settings.manifest + ": unknown setting \"" + name +
                        "\"; \"classpath\", \"option\", \"jvm\" and \"class PROGID\" are known",
                    {}};
    }
  }
  if (!hasClasspath) AddClasspath(folder, ".:*", settings.classpath);
  return settings;
}

std::string Settings::ClassOf(std::string_view progId) const {
  for (const auto& [named, name] : classes) {
    if (Lower(named) == Lower(progId)) return name;
  }
  constexpr std::string_view kJava = "java:";
  if (Lower(progId.substr(0, kJava.size())) == kJava) progId.remove_prefix(kJava.size());
  return std::string(progId);
}

std::string Settings::Classpath() const {
  std::string text;
  for (const std::string& path : classpath) text += (text.empty() ? "" : ":") + path;
  return text;
}

}  // namespace java_bridge
