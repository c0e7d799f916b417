#include "tools/qmxadmin/settings_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/system/environment.h"
#include "platform/text_lines.h"
#include "platform/trim.h"
#include "tools/qmxadmin/system/usual_places.h"

namespace qmx {
namespace {

constexpr const char* kNameCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";

// Returns the value without its quotes, or nothing if a quote is not closed or something follows it.
std::optional<std::string> Unquoted(std::string_view text) {
  if (text.empty() || (text.front() != '"' && text.front() != '\'')) return std::string(text);
  const char quote = text.front();
  std::string value;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == quote) return at + 1 == text.size() ? std::optional(value) : std::nullopt;
    // A shell and systemd treat "\" in double quotes as an escape before these characters.
    const bool escapes = quote == '"' && text[at] == '\\' && at + 1 < text.size() &&
                         std::string_view("\"\\$`").find(text[at + 1]) != std::string_view::npos;
    value += text[escapes ? ++at : at];
  }
  return std::nullopt;
}

}  // namespace

SettingsFile SettingsFile::FromEnvironment() {
  return SettingsFile(EnvironmentVariable("QMX_SETTINGS").value_or(UsualSettingsFile()));
}

SettingsFile::SettingsFile(std::string path) : path_(std::move(path)) {
  if (!path_.empty()) Read();
}

void SettingsFile::Read() {
  TextLines lines{std::filesystem::path(path_)};
  if (!lines.IsOpen()) {
    if (errno != ENOENT) unreadable_ = fmt::format("{} cannot be read: {}.", path_, std::strerror(errno));
    return;
  }
  while (lines.Next()) {
    if (lines.IsUtf16()) {
      problems_.push_back(fmt::format("{}, line 1: {}.", path_, TextLines::kIsUtf16));
      return;
    }
    ReadLine(lines.Line(), lines.Number());
  }
}

void SettingsFile::ReadLine(std::string_view text, int number) {
  if (text.empty() || text.front() == '#' || text.front() == ';') return;
  const std::size_t end = text.find_first_not_of(kNameCharacters);
  const bool isSetting = end != 0 && end != std::string_view::npos && text[end] == '=';
  const std::optional<std::string> value =
      isSetting ? Unquoted(Trimmed(text.substr(end + 1), TextLines::kBlanks)) : std::nullopt;
  if (value) {
    settings_.push_back({std::string(text.substr(0, end)), *value});
  } else {
    problems_.push_back(fmt::format("{}, line {}: NAME=VALUE is expected. The line is ignored.", path_, number));
  }
}

void SettingsFile::ApplyToEnvironment() const {
  const bool namesDatabase = EnvironmentVariable("QMX_CONNECTION") || EnvironmentVariable("QMX_DATABASE");
  std::vector<Setting> missing;
  for (const Setting& setting : settings_) {
    const bool isOfDatabase = setting.name == "QMX_CONNECTION" || setting.name == "QMX_DATABASE";
    if (isOfDatabase ? !namesDatabase : !EnvironmentVariable(setting.name)) missing.push_back(setting);
  }
  // The last of several lines with the same name counts.
  for (const Setting& setting : missing) SetVariable(setting.name, setting.value);
}

}  // namespace qmx
