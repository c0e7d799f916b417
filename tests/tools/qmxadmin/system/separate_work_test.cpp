#include "tools/qmxadmin/system/separate_work.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/system/write_all.h"

namespace qmx::test {
namespace {

struct Done {
  std::string written;
  std::string end;
};

Done Do(const SeparateWork::Steps& steps, std::size_t first) {
  SeparateWork work(steps, first);
  Done done;
  for (std::string read; !(read = work.Read()).empty();) done.written += read;
  done.end = work.WaitForEnd();
  return done;
}

TEST(SeparateWork, IsDoneFromItsFirstStepOnAndWritesOnItsDescriptor) {
  EXPECT_FALSE(SeparateWork::IsThisProcess());
  const Done done = Do([](std::size_t first, int descriptor) { WriteAll(descriptor, std::to_string(first)); }, 7);
  EXPECT_EQ(done.written, "7");
  EXPECT_EQ(done.end, "something called exit with status 0");
}

TEST(SeparateWork, ThatCrashesHasWrittenWhatCameBefore) {
  const Done done = Do(
      [](std::size_t, int descriptor) {
        WriteAll(descriptor, "before");
        __builtin_trap();
      },
      0);
  EXPECT_EQ(done.written, "before");
  EXPECT_TRUE(done.end.ends_with(" ended the process")) << done.end;
}

TEST(SeparateWork, ThatExitsTellsItsStatus) {
  EXPECT_EQ(Do([](std::size_t, int) { std::_Exit(5); }, 0).end, "something called exit with status 5");
}

}  // namespace
}  // namespace qmx::test
