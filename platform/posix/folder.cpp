#include "platform/system/folder.h"

#include <dirent.h>

#include <cerrno>
#include <memory>

namespace qmx {

int ListFolder(const std::filesystem::path& folder, std::string_view extension,
               std::vector<std::filesystem::path>& files) {
  struct Closer {
    void operator()(DIR* open) const { closedir(open); }
  };
  const std::unique_ptr<DIR, Closer> open(opendir(folder.c_str()));
  if (!open) return errno;
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(open.get());
    if (!entry) return errno;
    const std::filesystem::path name = entry->d_name;
    if (name.extension() == extension) files.push_back(folder / name);
  }
}

}  // namespace qmx
