#include "platform/system/paths.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "platform/system/environment.h"

namespace qmx {
namespace {

std::string HomeFolder() {
  if (const auto home = EnvironmentVariable("HOME"); home && !home->empty()) return *home;
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found && *found->pw_dir) {
    return found->pw_dir;
  }
  return "/";
}

std::string SystemDrive() {
  const auto folder = EnvironmentVariable("QMX_SYSTEM_DRIVE");
  return folder && !folder->empty() ? *folder : HomeFolder();
}

}  // namespace

std::string NativePath(std::string_view path) {
  std::string native;
  if (path.starts_with("C:") || path.starts_with("c:")) {
    path.remove_prefix(2);
    native = SystemDrive();
    if (!native.ends_with('/')) native += '/';
    path.remove_prefix(std::min(path.find_first_not_of("\\/"), path.size()));
  }
  native += path;
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

std::string PathText(std::string_view nativePath) {
  std::string path(nativePath);
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace qmx
