#include "tests/support/second_process.h"

namespace qmx::test {

std::filesystem::path OwnProgram() { return std::filesystem::read_symlink("/proc/self/exe"); }

}  // namespace qmx::test
