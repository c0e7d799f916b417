#include "platform/system/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using Paths = std::vector<std::filesystem::path>;

TEST(AListedFolder, GivesThePathsWithTheExtension) {
  const TempFolder folder;
  for (const char* name : {"a.component", "b.component", "c.txt", "component", ".component"})
    WriteFile(folder.Path() / name, "");
  Paths files = {"before"};
  EXPECT_EQ(ListFolder(folder.Path(), ".component", files), 0);
  EXPECT_THAT(files,
              testing::UnorderedElementsAre("before", folder.Path() / "a.component", folder.Path() / "b.component"));
}

TEST(AListedFolder, SaysWhyItCannotBeListed) {
  const TempFolder folder;
  WriteFile(folder.Path() / "file", "");
  Paths files;
  EXPECT_EQ(ListFolder(folder.Path() / "none", ".component", files), ENOENT);
  EXPECT_EQ(ListFolder(folder.Path() / "file", ".component", files), ENOTDIR);
  EXPECT_EQ(files, Paths());
}

}  // namespace
}  // namespace qmx::test
