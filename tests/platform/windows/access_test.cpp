#include "platform/system/access.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(Access, IsFreeToAFileOfOnesOwn) {
  const TempFolder folder;
  WriteFile(folder / "own", "text");
  EXPECT_EQ(AccessProblem(folder / "own", FileRight::Read), 0);
  EXPECT_EQ(AccessProblem(folder / "own", FileRight::Write), 0);
}

TEST(Access, IsRefusedToAFileThatIsMissingOrAFolder) {
  const TempFolder folder;
  EXPECT_EQ(AccessProblem(folder / "none", FileRight::Read), ENOENT);
  EXPECT_EQ(AccessProblem(folder.Path().string(), FileRight::Write), EACCES);
}

TEST(Access, ToAddFilesIsFreeInAFolderOfOnesOwnAndImpossibleInNone) {
  const TempFolder folder;
  EXPECT_EQ(FolderAccessProblem(folder.Path().string()), 0);
  EXPECT_EQ(FolderAccessProblem(folder / "none"), ENOENT);
}

}  // namespace
}  // namespace qmx::test
