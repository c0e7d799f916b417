#include "platform/odbc/data_source_file.h"

#include <filesystem>
#include <string_view>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/odbc/driver_manager.h"
#include "platform/text_encoding.h"
#include "platform/text_lines.h"
#include "platform/trim.h"

namespace qmx {
namespace {

bool IsOdbcSection(std::string_view line) {
  const std::string_view name = line.substr(1, line.find(']') - 1);
  return SameName(Trimmed(name, TextLines::kBlanks), "ODBC");
}

// Reads the pairs of the section, which the connection text separates with ";".
std::string PairsOf(TextLines& lines, const std::string& file) {
  const auto requireThat = [&](bool holds, const std::string& otherwise) {
    if (holds) return;
    throw Error(errors::kInvalidCall, "ODBC",
                "The data source file " + file + ", line " + std::to_string(lines.Number()) + ": " + otherwise + ".")
        .With("file", file);
  };
  std::string pairs;
  bool isInSection = false;
  while (lines.Next()) {
    const std::string_view line = lines.Line();
    requireThat(!lines.IsUtf16(), TextLines::kIsUtf16);
    if (line.starts_with('[')) isInSection = IsOdbcSection(line);
    const std::size_t equals = line.find('=');
    if (!isInSection || equals == line.npos || line.find_first_of("[;#") == 0) continue;
    requireThat(FindFlaw(line) == line.npos, "the text is not UTF-8. Save it as UTF-8");
    const std::string_view value = Trimmed(line.substr(equals + 1), TextLines::kBlanks);
    requireThat(value.starts_with('{') || value.find(';') == value.npos,
                "the value holds a \";\". Put it in braces, with \"}\" doubled inside");
    pairs.append(pairs.empty() ? "" : ";").append(Trimmed(line.substr(0, equals), TextLines::kBlanks)).append("=");
    pairs.append(value);
  }
  return pairs;
}

}  // namespace

std::string ReadDataSourceFile(const std::string& file) {
  TextLines lines{std::filesystem::path(file)};
  std::string pairs = lines.IsOpen() ? PairsOf(lines, file) : ReadDriverManagersFile(file);
  if (pairs.empty()) {
    throw Error(errors::kProviderUnspecified, "ODBC",
                "The data source file " + file + " cannot be read or has no section [ODBC].")
        .With("file", file);
  }
  return pairs;
}

}  // namespace qmx
