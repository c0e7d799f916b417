#include "platform/system/access.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/as_nobody.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(AccessToAFile, HasNoProblemForItsOwner) {
  const TempFolder folder;
  const std::string file = folder.Path() / "file";
  WriteFile(file, "");
  EXPECT_EQ(AccessProblem(file, FileRight::Read), 0);
  EXPECT_EQ(AccessProblem(file, FileRight::Write), 0);
}

TEST(AccessToAFile, IsThatOfTheEffectiveUser) {
  const TempFolder folder;
  const std::filesystem::path file = folder.Path() / "file";
  WriteFile(file, "");
  MakeReadOnly(file);
  MakeReadOnly(folder.Path());
  const AsNobody nobody;
  EXPECT_EQ(AccessProblem(file, FileRight::Read), 0);
  EXPECT_EQ(AccessProblem(file, FileRight::Write), EACCES);
}

TEST(AccessToAFile, HasAProblemWithoutTheFile) {
  const TempFolder folder;
  EXPECT_EQ(AccessProblem(folder.Path() / "none", FileRight::Read), ENOENT);
}

}  // namespace
}  // namespace qmx::test
