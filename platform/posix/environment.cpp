#include "platform/system/environment.h"

#include <cstdlib>

namespace qmx {

std::optional<std::string> EnvironmentVariable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  return value ? std::optional<std::string>(value) : std::nullopt;
}

const char kSearchPathSeparator = ':';

}  // namespace qmx
