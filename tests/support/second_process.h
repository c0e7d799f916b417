// A second process of the test program. It does work that the test program defines, instead of running tests.
//
//   const SecondProcess::Work kCounts("counts", [](const SecondProcess::Words& words) { ... });
//   EXPECT_EQ(SecondProcess("counts", {"3"}).Wait().status, 0);
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/process.h"

namespace qmx::test {

// Its exit status is 0 after the work, and 1 if the work raised an Error, whose chain is on standard error. Its
// standard output begins with lines of GoogleTest.
class SecondProcess : public RunningProcess {
 public:
  using Words = std::vector<std::string>;

  // Define it as a constant of the test's source. Names are unique in a test program.
  struct Work {
    Work(const std::string& name, std::function<void(const Words&)> work);
  };

  // The words hold no line end.
  SecondProcess(const std::string& work, const Words& words);
};

// The file of this program.
std::filesystem::path OwnProgram();

// Waits until there is such a file. Raises an Error after a minute.
void AwaitFile(const std::filesystem::path& file);

}  // namespace qmx::test
