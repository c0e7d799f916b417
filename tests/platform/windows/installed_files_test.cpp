#include "platform/system/installed_files.h"

#include <gtest/gtest.h>

namespace qmx {
namespace {

TEST(InstalledFiles, AreBesideTheProgramAndNotInTheCurrentFolder) {
  const std::filesystem::path program = InstalledPath("windows_tests.exe");
  EXPECT_TRUE(program.is_absolute());
  EXPECT_TRUE(std::filesystem::is_regular_file(program)) << program;
  EXPECT_EQ(InstalledPath("components"), program.parent_path() / "components");

  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path("C:\\");
  EXPECT_EQ(InstalledPath("windows_tests.exe"), program);
  std::filesystem::current_path(before);
}

TEST(InstalledFiles, MayBeGivenAnAbsolutePath) {
  EXPECT_EQ(InstalledPath("C:\\QMX\\components"), "C:\\QMX\\components");
}

}  // namespace
}  // namespace qmx
