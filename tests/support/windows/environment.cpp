#include "tests/support/environment.h"

#include <filesystem>

namespace qmx::test {

// An empty value removes the variable.
void EnvironmentVariable::Set(const char* value) {
  _wputenv_s(std::filesystem::path(name_).c_str(), std::filesystem::path(value ? value : "").c_str());
}

}  // namespace qmx::test
