#include "tools/qmxadmin/system/new_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <set>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

namespace fs = std::filesystem;

TEST(ANewFile, HasANameOfItsOwnAndBytesAsTheyAreWritten) {
  const TempFolder folder;
  std::set<std::string> names;
  for (int i = 0; i < 20; ++i) {
    std::string name = (folder.Path() / "Größe.XXXXXX").string();
    std::FILE* const file = CreateNewFile(name);
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(LetEverybodyRead(file));
    std::fputs("a\nb\r\n", file);
    std::fclose(file);
    EXPECT_EQ(ReadFile(name), "a\nb\r\n");
    EXPECT_THAT(name, testing::StartsWith((folder.Path() / "Größe.").string()));
    names.insert(name);
  }
  EXPECT_EQ(names.size(), 20U);
  EXPECT_EQ(names.count((folder.Path() / "Größe.XXXXXX").string()), 0U);
}

TEST(ANewFile, CannotBeMadeInAFolderThatIsMissing) {
  const TempFolder folder;
  std::string name = (folder.Path() / "none" / "file.XXXXXX").string();
  EXPECT_EQ(CreateNewFile(name), nullptr);
  EXPECT_EQ(errno, ENOENT);
}

TEST(ANewFolder, HasANameOfItsOwn) {
  const TempFolder folder;
  std::string first = (folder.Path() / "qmx-XXXXXX").string();
  std::string second = first;
  EXPECT_TRUE(CreateNewFolder(first));
  EXPECT_TRUE(CreateNewFolder(second));
  EXPECT_NE(first, second);
  EXPECT_TRUE(fs::is_directory(first));
  EXPECT_TRUE(fs::is_directory(second));
}

TEST(ANewFolder, CannotBeMadeInAFolderThatIsMissing) {
  const TempFolder folder;
  std::string name = (folder.Path() / "none" / "folder-XXXXXX").string();
  EXPECT_FALSE(CreateNewFolder(name));
  EXPECT_EQ(errno, ENOENT);
}

TEST(TemporaryFiles, HaveAFolderWithoutASeparatorAtItsEnd) {
  EXPECT_TRUE(fs::is_directory(TemporaryFiles()));
  EXPECT_THAT(TemporaryFiles(), testing::Not(testing::EndsWith("/")));
  EXPECT_THAT(TemporaryFiles(), testing::Not(testing::EndsWith("\\")));
}

}  // namespace
}  // namespace qmx::test
