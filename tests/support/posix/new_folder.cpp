#include <cstdlib>

#include "tests/support/temp_folder.h"

namespace qmx::test {

std::filesystem::path NewFolder(const std::filesystem::path& parent) {
  std::string name = (parent / "qmx-test-XXXXXX").string();
  if (!mkdtemp(name.data())) return {};
  return name;
}

}  // namespace qmx::test
