#include "jvm_places.h"

#include <cstdlib>
#include <filesystem>

namespace java_bridge {
namespace {

std::string In(const std::filesystem::path& home) { return home / "lib/server/libjvm.so"; }

}  // namespace

std::vector<std::string> JvmPlaces(const std::string& jvm) {
  if (!jvm.empty()) return {std::filesystem::is_directory(jvm) ? In(jvm) : jvm};
  std::vector<std::string> places;
  const char* const home = std::getenv("JAVA_HOME");
  if (home && *home) places.push_back(In(home));
  places.push_back(In("/usr/lib/jvm/default-java"));
  return places;
}

}  // namespace java_bridge
