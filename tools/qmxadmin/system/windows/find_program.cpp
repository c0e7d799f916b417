#include "tools/qmxadmin/system/find_program.h"

#include <algorithm>

#include "platform/system/environment.h"
#include "platform/windows/own_path.h"

namespace qmx {

std::string FindProgram(const std::string& name) {
  const std::string file = name + ".exe";
  std::error_code unknown;
  const std::filesystem::path beside = OwnPath().parent_path() / file;
  if (std::filesystem::is_regular_file(beside, unknown)) return beside.string();
  const std::string path = EnvironmentVariable("PATH").value_or("");
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find(kSearchPathSeparator, start), path.size());
    const std::filesystem::path candidate = std::filesystem::path(path.substr(start, end - start)) / file;
    if (std::filesystem::is_regular_file(candidate, unknown)) return candidate.string();
    start = end + 1;
  }
  return {};
}

}  // namespace qmx
