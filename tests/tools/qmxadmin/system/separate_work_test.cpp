#include "tools/qmxadmin/system/separate_work.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "platform/system/end_at_once.h"
#include "platform/system/exit_guard.h"
#include "platform/system/write_all.h"
#include "tests/support/second_process.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

// Windows starts the program once more for the steps, with the same command line and environment: in a process that
// does nothing but this one work, it comes to the same steps again. The words are the work and the file of its result.
const std::map<std::string, SeparateWork::Steps> kSteps = {
    {"tell", [](std::size_t first, int descriptor) { WriteAll(descriptor, std::to_string(first)); }},
    {"crash",
     [](std::size_t, int descriptor) {
       WriteAll(descriptor, "before");
       __builtin_trap();
     }},
    {"exit", [](std::size_t, int) { EndAtOnce(5); }}};

const SecondProcess::Work kWork("separate work", [](const SecondProcess::Words& words) {
  GuardExit();  // as the tool does
  SeparateWork work(kSteps.at(words[0]), 7);
  std::string written;
  for (std::string read; !(read = work.Read()).empty();) written += read;
  WriteFile(words[1], written + ", " + work.WaitForEnd());
  EndOfMain(0);
});

std::string ResultOf(const std::string& steps) {
  const TempFolder folder;
  const Process end = SecondProcess("separate work", {steps, folder / "result"}).Wait();
  EXPECT_EQ(end.status, 0) << end.err;
  return ReadFile(folder / "result");
}

TEST(SeparateWork, IsDoneFromItsFirstStepOnAndWritesOnItsDescriptor) {
  EXPECT_FALSE(SeparateWork::IsThisProcess());
  EXPECT_EQ(ResultOf("tell"), "7, something called exit with status 0");
}

TEST(SeparateWork, ThatCrashesHasWrittenWhatCameBefore) {
  EXPECT_THAT(ResultOf("crash"), AllOf(StartsWith("before, "), EndsWith(" ended the process")));
}

TEST(SeparateWork, ThatExitsTellsItsStatus) { EXPECT_EQ(ResultOf("exit"), ", something called exit with status 5"); }

}  // namespace
}  // namespace qmx::test
