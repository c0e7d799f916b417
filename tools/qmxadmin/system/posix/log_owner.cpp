#include "tools/qmxadmin/system/log_owner.h"

#include <fmt/format.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qmx {
namespace {

std::string UserName(uid_t user) {
  const passwd* const entry = getpwuid(user);
  return entry ? entry->pw_name : fmt::format("user {}", user);
}

}  // namespace

std::string WrongOwner(const std::string& log, const std::string& folder) {
  struct stat ofLog {};
  struct stat ofFolder {};
  if (stat(log.c_str(), &ofLog) != 0 || stat(folder.c_str(), &ofFolder) != 0) return {};
  const uid_t expected = geteuid() == 0 ? ofFolder.st_uid : geteuid();
  if (ofLog.st_uid == expected) return {};
  return fmt::format("it belongs to {}, not to {}", UserName(ofLog.st_uid), UserName(expected));
}

}  // namespace qmx
