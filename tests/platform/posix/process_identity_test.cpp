#include "platform/system/process_identity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/process.h"

namespace qmx::test {
namespace {

using testing::MatchesRegex;

TEST(TheProcessIdentity, IsThatOfTheKernelAndTheUsersFile) {
  const ProcessIdentity process = ThisProcess();
  EXPECT_EQ(process.host + "\n", test::Run("/bin/uname", {"-n"}).out);
  EXPECT_EQ(process.process, getpid());
  EXPECT_EQ(process.userNumber, geteuid());
  EXPECT_EQ(process.user + "\n", test::Run("/usr/bin/id", {"-un"}).out);
  EXPECT_THAT(process.boot, MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}"));
  EXPECT_EQ(process.boot + "\n", test::Run("/bin/cat", {"/proc/sys/kernel/random/boot_id"}).out);
}

TEST(TheProcessIdentity, HasTheStartTimeThatTheKernelReports) {
  const std::string number = std::to_string(getpid());
  // The program's name, which stands in brackets, has no blank here.
  const std::string told = test::Run("/usr/bin/cut", {"-d ", "-f22", "/proc/" + number + "/stat"}).out;
  EXPECT_EQ(std::to_string(ThisProcess().startTicks.value_or(-1)) + "\n", told);
}

TEST(TheProcessIdentity, ReadsTheStartOfAProgramWhoseNameHoldsBlanksAndBrackets) {
  const std::optional<std::int64_t> before = StartTicksOf(getpid());
  char name[16];
  prctl(PR_GET_NAME, name);
  prctl(PR_SET_NAME, "a) b (c 1 2");
  EXPECT_EQ(StartTicksOf(getpid()), before);
  prctl(PR_SET_NAME, name);
  EXPECT_NE(before, std::nullopt);
}

TEST(TheProcessIdentity, HasNoStartIfThereIsNoSuchProcess) {
  EXPECT_EQ(StartTicksOf(0x7ffffff), std::nullopt);  // above the kernel's largest process number
}

// As long as its parent does not ask for its status, an ended process is in /proc.
TEST(TheProcessIdentity, HasNoStartIfTheProcessHasEnded) {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  siginfo_t end{};
  ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(StartTicksOf(child), std::nullopt);
  waitpid(child, nullptr, 0);
}

TEST(ThePeakMemory, GrowsWithWhatTheProcessUses) {
  const std::int64_t before = PeakMemoryKib().value_or(0);
  EXPECT_GT(before, 1000);
  const std::string used(64 << 20, 'x');
  EXPECT_GT(PeakMemoryKib().value_or(0), before + 32 * 1024);
}

}  // namespace
}  // namespace qmx::test
