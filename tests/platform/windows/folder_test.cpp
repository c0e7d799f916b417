#include "platform/system/folder.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::UnorderedElementsAre;

TEST(FolderListing, HasThePathsOfTheFilesWithTheExtension) {
  const TempFolder folder;
  WriteFile(folder / "a.component", "");
  WriteFile(folder / "\u00E4\u65E5.component", "");
  WriteFile(folder / "b.txt", "");
  std::vector<std::filesystem::path> files;
  EXPECT_EQ(ListFolder(folder.Path(), ".component", files), 0);
  EXPECT_THAT(files, UnorderedElementsAre(folder.Path() / "a.component", folder.Path() / "\u00E4\u65E5.component"));
}

TEST(FolderListing, FailsWithoutTheFolder) {
  const TempFolder folder;
  std::vector<std::filesystem::path> files;
  EXPECT_EQ(ListFolder(folder.Path() / "none", ".component", files), ENOENT);
}

}  // namespace
}  // namespace qmx::test
