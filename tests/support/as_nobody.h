// Root may write everything, so tests of missing rights do their work as somebody else.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/process.h"

namespace qmx::test {

inline constexpr uid_t kNobody = 65534;

// While it lives, a process of root is nobody.
class AsNobody {
 public:
  AsNobody() {
    if (before_ == 0 && seteuid(kNobody) != 0) ADD_FAILURE() << "cannot become nobody";
  }
  ~AsNobody() {
    if (before_ == 0 && seteuid(0) != 0) ADD_FAILURE() << "cannot become root again";
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

 private:
  uid_t before_ = geteuid();
};

// Runs a program as nobody, if this process may.
inline Process RunAsNobody(const std::string& program, std::vector<std::string> arguments,
                           const std::map<std::string, std::string>& environment = {}) {
  if (geteuid() != 0) return Run(program, arguments, environment);
  arguments.insert(arguments.begin(), {"--reuid", "65534", "--regid", "65534", "--clear-groups", program});
  return Run("/usr/bin/setpriv", arguments, environment);
}

// A folder that anybody may look into but not write into, and a file that anybody may read only.
inline void MakeReadOnly(const std::filesystem::path& path) {
  using std::filesystem::perms;
  const bool isFolder = std::filesystem::is_directory(path);
  const perms readable = perms::owner_read | perms::group_read | perms::others_read;
  const perms enterable = perms::owner_exec | perms::group_exec | perms::others_exec;
  std::filesystem::permissions(path, isFolder ? readable | enterable : readable);
}

}  // namespace qmx::test
