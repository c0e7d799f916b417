#include "tests/support/temp_folder.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace qmx::test {

TempFolder::TempFolder(Place place) {
  const std::filesystem::path memory = "/dev/shm";
  const bool inMemory = place == Place::InMemory && std::filesystem::is_directory(memory);
  const std::filesystem::path parent = inMemory ? memory : std::filesystem::temp_directory_path();
  path_ = NewFolder(parent);
  if (path_.empty()) throw std::runtime_error("no temporary folder in " + parent.string());
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();  // unlike the buffer's own iterators, raises nothing where a read fails
  return text.str();
}

void WriteFile(const std::filesystem::path& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace qmx::test
