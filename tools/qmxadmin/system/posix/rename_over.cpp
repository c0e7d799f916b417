#include "tools/qmxadmin/system/rename_over.h"

#include <filesystem>

namespace qmx {

std::string RenameOver(const std::string& from, const std::string& to, std::chrono::milliseconds) {
  std::error_code problem;
  std::filesystem::rename(from, to, problem);
  return problem ? problem.message() : std::string();
}

}  // namespace qmx
