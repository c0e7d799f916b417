#include "platform/posix/kernel_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(AKernelFile, IsReadToItsEnd) {
  const TempFolder folder;
  const std::string text(10'000, 'x');
  WriteFile(folder.Path() / "text", text + '\0' + "end");
  EXPECT_EQ(ReadKernelFile(folder.Path() / "text"), text + '\0' + "end");
}

TEST(AKernelFile, IsEmptyWhereThereIsNone) { EXPECT_EQ(ReadKernelFile("/proc/no such file"), ""); }

TEST(AKernelFile, IsEmptyWhereItIsOpenedButRefusesToBeRead) {
  ASSERT_TRUE(std::ifstream("/proc/self"));  // opened: a folder
  EXPECT_EQ(ReadKernelFile("/proc/self"), "");
}

}  // namespace
}  // namespace qmx::test
