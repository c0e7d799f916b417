// A temporary folder of one test, removed with its content. It is in memory if the machine has such a file system,
// because some tests make hundreds of databases.
#pragma once

#include <filesystem>
#include <string>

namespace qmx::test {

class TempFolder {
 public:
  enum class Place { OnDisk, InMemory };
  explicit TempFolder(Place place = Place::OnDisk);
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

// Makes a folder with a name of its own. Empty if it cannot.
std::filesystem::path NewFolder(const std::filesystem::path& parent);

std::string ReadFile(const std::filesystem::path& path);  // the whole text; "" when there is no such file
void WriteFile(const std::filesystem::path& path, const std::string& text);

}  // namespace qmx::test
