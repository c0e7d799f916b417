// The processes of this machine.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace qmx {

struct RunningProgram {
  std::int64_t process = 0;
  std::string arguments;  // joined by blanks
  std::time_t start = 0;
};

// Returns the processes of the program with that name, in any folder. Processes whose arguments this user may not read
// are left out.
std::vector<RunningProgram> RunningPrograms(const std::string& name);

}  // namespace qmx
