#include "tools/qmxadmin/runs/output_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/full_disk.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

std::ptrdiff_t FilesIn(const TempFolder& folder) {
  return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
}

TEST(AnOutputFile, ReplacesTheOldOneWholeAndIsReadableByAll) {
  const TempFolder folder;
  WriteFile(folder / "file", "old");
  std::filesystem::create_hard_link(folder / "file", folder / "opened before");
  WriteOutputFile(folder / "file", "new");
  EXPECT_EQ(ReadFile(folder / "file"), "new");
  EXPECT_EQ(ReadFile(folder / "opened before"), "old");
  EXPECT_EQ(std::filesystem::status(folder / "file").permissions(), std::filesystem::perms(0644));
  EXPECT_EQ(FilesIn(folder), 2);
}

TEST(AnOutputFile, StaysAsItWasIfTheDiskIsFull) {
  const TempFolder folder;
  WriteFile(folder / "file", "old");
  const Error failure = [&] {
    const FullDisk full;
    return Raised([&] { WriteOutputFile(folder / "file", "new"); });
  }();
  EXPECT_EQ(failure.Description(), "The file \"" + (folder / "file") + "\" cannot be written: File too large.");
  EXPECT_EQ(ReadFile(folder / "file"), "old");
  EXPECT_EQ(FilesIn(folder), 1);
}

TEST(AnOutputFile, IsNamedIfItsFolderIsMissing) {
  EXPECT_EQ(Raised([] { WriteOutputFile("/none/file", "new"); }).Description(),
            "The file \"/none/file\" cannot be written: No such file or directory.");
}

}  // namespace
}  // namespace qmx::test
