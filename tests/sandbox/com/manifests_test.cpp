#include "com/manifests.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace orvan::test {
namespace {

using qmx::test::TempFolder;
using qmx::test::WriteFile;

TEST(AFolderOfManifests, GivesEachLibraryAndItsProgIds) {
  const TempFolder folder;
  WriteFile(folder / "a.component",
            "# A comment with library = no.dll\r\nlibrary = a.dll\r\n\r\nprogid = A.One\r\n progid =  A.Two \n");
  const std::vector<ServedLibrary> found = ReadManifests(folder.Path());
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].library, folder.Path() / "a.dll");
  EXPECT_EQ(found[0].progIds, (std::vector<std::string>{"A.One", "A.Two"}));
}

TEST(AFolderOfManifests, LeavesOutPatternsManifestsWithoutALibraryAndOtherFiles) {
  const TempFolder folder;
  WriteFile(folder / "a.component", "library = a.dll\nprogid = A.*\n");
  WriteFile(folder / "b.component", "progid = B.One\n");
  WriteFile(folder / "c.txt", "library = c.dll\nprogid = C.One\n");
  const std::vector<ServedLibrary> found = ReadManifests(folder.Path());
  ASSERT_EQ(found.size(), 1u);
  EXPECT_TRUE(found[0].progIds.empty());
}

}  // namespace
}  // namespace orvan::test
