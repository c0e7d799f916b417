#include "tools/qmxadmin/system/find_program.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/system/environment.h"
#include "tests/support/environment.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

namespace fs = std::filesystem;

const fs::path kChild = TEST_CHILD;

TEST(AProgram, IsFoundBesideThisOneAtFirst) {
  const EnvironmentVariable path("PATH", "");
  const fs::path self = fs::absolute(TEST_SELF).make_preferred();
  EXPECT_EQ(FindProgram(self.stem().string()), self.string());
}

TEST(AProgram, IsFoundInAFolderOfThePathElse) {
  const TempFolder empty;
  const std::string folders = empty.Path().string() + kSearchPathSeparator + kChild.parent_path().string();
  const EnvironmentVariable path("PATH", folders.c_str());
  EXPECT_TRUE(fs::equivalent(FindProgram(kChild.stem().string()), kChild));
}

TEST(AProgram, IsNotAFolderOfItsName) {
  const TempFolder folder;
  fs::create_directory(folder.Path() / ("qmx" + kChild.extension().string()));
  const EnvironmentVariable path("PATH", folder.Path().string().c_str());
  EXPECT_EQ(FindProgram("qmx"), "");
}

TEST(AProgram, ThatIsNowhereHasNoPath) { EXPECT_EQ(FindProgram("no such program"), ""); }

}  // namespace
}  // namespace qmx::test
