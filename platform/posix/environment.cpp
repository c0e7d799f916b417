#include "platform/system/environment.h"

#include <cstdlib>

namespace qmx {

std::optional<std::string> EnvironmentVariable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  return value ? std::optional<std::string>(value) : std::nullopt;
}

void SetVariable(const std::string& name, const std::string& value) { setenv(name.c_str(), value.c_str(), 1); }

const char kSearchPathSeparator = ':';

}  // namespace qmx
