#include "tools/qmxadmin/system/rename_over.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(ARenamedFile, TakesThePlaceOfAnother) {
  const TempFolder folder;
  WriteFile(folder / "Größe new", "new");
  WriteFile(folder / "Größe", "old");
  EXPECT_EQ(RenameOver(folder / "Größe new", folder / "Größe"), "");
  EXPECT_EQ(ReadFile(folder / "Größe"), "new");
  EXPECT_FALSE(std::filesystem::exists(folder / "Größe new"));
}

TEST(ARenamedFile, MayBeTheFirstOfItsName) {
  const TempFolder folder;
  WriteFile(folder / "new", "new");
  EXPECT_EQ(RenameOver(folder / "new", folder / "file"), "");
  EXPECT_EQ(ReadFile(folder / "file"), "new");
}

TEST(ARenamedFile, StaysWhereItIsIfTheFolderIsMissing) {
  const TempFolder folder;
  WriteFile(folder / "new", "new");
  EXPECT_NE(RenameOver(folder / "new", folder / "none/file"), "");
  EXPECT_EQ(ReadFile(folder / "new"), "new");
}

TEST(ARenamedFile, LeavesTheOldOneIfItIsMissing) {
  const TempFolder folder;
  WriteFile(folder / "file", "old");
  EXPECT_NE(RenameOver(folder / "new", folder / "file"), "");
  EXPECT_EQ(ReadFile(folder / "file"), "old");
}

}  // namespace
}  // namespace qmx::test
