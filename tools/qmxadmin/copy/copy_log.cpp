#include "tools/qmxadmin/copy/copy_log.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "platform/system/paths.h"

namespace qmx {
namespace {

// Returns the number in "Table : CODE - NUMBER records WHAT".
std::optional<std::int64_t> NumberBefore(std::string_view line, std::string_view what) {
  const std::string ending = " records " + std::string(what) + "\"";
  const std::size_t end = line.find(ending);
  const std::size_t dash = line.rfind(" - ", end);
  if (end == std::string_view::npos || dash == std::string_view::npos) return std::nullopt;
  std::int64_t number = 0;
  const auto parsed = std::from_chars(line.data() + dash + 3, line.data() + end, number);
  return parsed.ec == std::errc() ? std::optional(number) : std::nullopt;
}

}  // namespace

CopyLog::CopyLog(const std::string& logDirectory, const std::string& tableCode)
    : path_(NativePath(logDirectory + "\\" + tableCode + ".log")) {
  std::error_code missing;
  const std::uintmax_t size = std::filesystem::file_size(path_, missing);
  if (!missing) start_ = size;
}

std::optional<CopyCounts> CopyLog::NewCounts() const {
  std::ifstream file(std::filesystem::path(path_), std::ios::binary);
  file.seekg(static_cast<std::streamoff>(start_));
  std::optional<CopyCounts> counts;
  for (std::string line; std::getline(file, line);) {
    if (const auto added = NumberBefore(line, "Inserted")) counts = CopyCounts{*added, 0, 0};
    if (!counts) continue;
    if (const auto updated = NumberBefore(line, "Updated")) counts->updated = *updated;
    if (const auto removed = NumberBefore(line, "Deleted")) counts->removed = *removed;
  }
  return counts;
}

}  // namespace qmx
