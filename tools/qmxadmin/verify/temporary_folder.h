// A private temporary folder in $TMPDIR or /tmp. The destructor removes it and its contents.
#pragma once

#include <filesystem>

namespace qmx {

class TemporaryFolder {
 public:
  TemporaryFolder();  // raises 75 if none can be created
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace qmx
