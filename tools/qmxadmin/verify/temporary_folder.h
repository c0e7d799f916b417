// A folder of this process alone, in $TMPDIR, else /tmp; gone with this object, and all that is in it.
#pragma once

#include <filesystem>

namespace qmx {

class TemporaryFolder {
 public:
  TemporaryFolder();  // raises 75 where none can be made
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace qmx
