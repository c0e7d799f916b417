#include "tests/support/environment.h"

namespace qmx::test {

// An empty value removes the variable.
void EnvironmentVariable::Set(const char* value) { _putenv_s(name_, value ? value : ""); }

}  // namespace qmx::test
