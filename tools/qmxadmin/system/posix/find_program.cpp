#include "tools/qmxadmin/system/find_program.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "platform/system/environment.h"

namespace qmx {
namespace {

bool IsProgram(const std::string& path) {
  return access(path.c_str(), X_OK) == 0 && !std::filesystem::is_directory(path);
}

}  // namespace

std::string FindProgram(const std::string& name) {
  std::error_code unknown;
  const std::filesystem::path own = std::filesystem::read_symlink("/proc/self/exe", unknown);
  const std::string beside = own.parent_path() / name;
  if (!unknown && IsProgram(beside)) return beside;
  const std::string path = EnvironmentVariable("PATH").value_or("");
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find(kSearchPathSeparator, start), path.size());
    const std::string candidate = path.substr(start, end - start) + "/" + name;
    if (IsProgram(candidate)) return candidate;
    start = end + 1;
  }
  return {};
}

}  // namespace qmx
