#include "tests/support/environment.h"

namespace qmx::test {

void EnvironmentVariable::Set(const char* value) { value ? setenv(name_, value, 1) : unsetenv(name_); }

}  // namespace qmx::test
