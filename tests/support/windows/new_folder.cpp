#include <random>

#include "tests/support/temp_folder.h"

namespace qmx::test {

std::filesystem::path NewFolder(const std::filesystem::path& parent) {
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::filesystem::path folder = parent / ("qmx-test-" + std::to_string(random()));
    std::error_code problem;
    if (std::filesystem::create_directory(folder, problem)) return folder;
  }
  return {};
}

}  // namespace qmx::test
