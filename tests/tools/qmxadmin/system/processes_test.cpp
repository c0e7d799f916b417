#include "tools/qmxadmin/system/processes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/tools/qmxadmin/system/waiting_child.h"

namespace qmx::test {
namespace {

// Other tests may run the same program meanwhile.
std::vector<RunningProgram> ProgramsWith(const std::string& arguments) {
  std::vector<RunningProgram> running = RunningPrograms(std::filesystem::path(TEST_CHILD).stem().string());
  std::erase_if(running, [&](const RunningProgram& program) { return program.arguments != arguments; });
  return running;
}

TEST(RunningProgramsOfAName, HaveTheirArgumentsAndTheirStart) {
  constexpr std::time_t kRounding = 2;  // the kernel's clock and the boot's second are rounded
  const std::time_t before = std::time(nullptr);
  WaitingChild child;
  const std::vector<RunningProgram> running = ProgramsWith(child.Argument());
  ASSERT_EQ(running.size(), 1U);
  EXPECT_GT(running[0].process, 0);
  EXPECT_GE(running[0].start, before - kRounding);
  EXPECT_LE(running[0].start, std::time(nullptr) + kRounding);
  child.End();
  EXPECT_TRUE(ProgramsWith(child.Argument()).empty());
}

TEST(RunningProgramsOfAName, AreNoneIfNoneRuns) { EXPECT_TRUE(RunningPrograms("no such program").empty()); }

}  // namespace
}  // namespace qmx::test
