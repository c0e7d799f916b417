// Sequential text files: their content on disk, reading it back, and the error numbers.
#include "platform/system/text_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "platform/system/paths.h"
#include "tests/support/environment.h"
#include "tests/support/full_disk.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class TextFilesTest : public testing::Test {
 protected:
  std::string PathOf(const std::string& name) { return PathText(folder_ / name); }

  std::vector<std::string> FieldsOf(const std::string& text) {
    WriteFile(folder_ / "in.txt", text);
    files_.OpenForInput(PathOf("in.txt"), 1);
    std::vector<std::string> fields;
    try {
      for (;;) fields.push_back(files_.InputField(1));
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), 62);
    }
    files_.Close(1);
    return fields;
  }

  TempFolder folder_;
  SystemTextFiles files_;
};

using Fields = std::vector<std::string>;

TEST_F(TextFilesTest, PrintsLinesUnchangedAndCreatesTheFile) {
  files_.OpenForAppend(PathOf("a.txt"), 1);
  files_.Print(1, "Date-Time :\"x\"");
  files_.Print(1, "");
  files_.Close(1);
  EXPECT_EQ(ReadFile(folder_ / "a.txt"), "Date-Time :\"x\"\r\n\r\n");
}

TEST_F(TextFilesTest, AppendsToWhatIsThere) {
  WriteFile(folder_ / "a.txt", "old\r\n");
  files_.OpenForAppend(PathOf("a.txt"), 1);
  files_.Print(1, "new");
  files_.Close(1);
  EXPECT_EQ(ReadFile(folder_ / "a.txt"), "old\r\nnew\r\n");
}

TEST_F(TextFilesTest, WritesRecordsOfQuotedItems) {
  files_.OpenForAppend(PathOf("a.txt"), 1);
  files_.Write(1, {"Copy Service Types", " Copy failed"});
  files_.Write(1, {"say \"hello\""});
  files_.Write(1, {"", ""});
  files_.Close(1);
  EXPECT_EQ(ReadFile(folder_ / "a.txt"),
            "\"Copy Service Types\",\" Copy failed\"\r\n\"say \"hello\"\"\r\n\"\",\"\"\r\n");
}

TEST_F(TextFilesTest, KeepsTheLinesOfOneOpeningTogether) {
  SystemTextFiles other;
  files_.OpenForAppend(PathOf("a.txt"), 1);
  other.OpenForAppend(PathOf("a.txt"), 1);
  files_.Print(1, "one");
  other.Print(1, "ONE");
  files_.Print(1, "two");
  other.Print(1, "TWO");
  files_.Close(1);
  other.Close(1);
  EXPECT_EQ(ReadFile(folder_ / "a.txt"), "one\r\ntwo\r\nONE\r\nTWO\r\n");
}

TEST_F(TextFilesTest, ReadsFieldsUpToCommaOrLineEnd) {
  EXPECT_EQ(FieldsOf("days=30"), (Fields{"days=30"}));
  EXPECT_EQ(FieldsOf("days=30\r\nx,y\nz\rlast\r\n"), (Fields{"days=30", "x", "y", "z", "last"}));
  EXPECT_EQ(FieldsOf("\r\n\r\nx"), (Fields{"", "", "x"}));
  EXPECT_EQ(FieldsOf(",x"), (Fields{"", "x"}));
  EXPECT_EQ(FieldsOf("days=30,9"), (Fields{"days=30", "9"}));
}

TEST_F(TextFilesTest, DropsBlanksBeforeAFieldAndTheQuotesAroundIt) {
  EXPECT_EQ(FieldsOf("  days=30  ,  \"a, b\" , \"c\nd\""), (Fields{"days=30  ", "a, b", "c\nd"}));
  EXPECT_EQ(FieldsOf("\"\",x"), (Fields{"", "x"}));
  EXPECT_EQ(FieldsOf("\"never closed, x\r\n"), (Fields{"\"never closed, x\r\n"}));
}

TEST_F(TextFilesTest, ReadsNothingFromAnEmptyFileAndLeavesItOpen) {
  WriteFile(folder_ / "empty.ini", "");
  files_.OpenForInput(PathOf("empty.ini"), 1);
  EXPECT_EQ(Raised([&] { files_.InputField(1); }).Number(), 62);
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(PathOf("a.log"), 1); }).Number(), 55);
  files_.Close(1);
}

TEST_F(TextFilesTest, ANumberThatIsOpenIsRefusedWithBothPaths) {
  files_.OpenForAppend(PathOf("a.txt"), 1);
  const Error error = Raised([&] { files_.OpenForAppend(PathOf("b.txt"), 1); });
  EXPECT_EQ(error.Number(), 55);
  EXPECT_EQ(error.Description(), "File already open: number 1 is in use by " + (folder_ / "a.txt") +
                                     " and cannot be used for " + (folder_ / "b.txt"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "b.txt"));
  files_.OpenForAppend(PathOf("b.txt"), 2);
  files_.Close(2);
  files_.Close(1);
}

TEST_F(TextFilesTest, ANumberThatIsNotOpenOrOpenTheOtherWayIsABadFileNumber) {
  EXPECT_EQ(Raised([&] { files_.Print(1, "x"); }).Number(), 52);
  EXPECT_EQ(Raised([&] { files_.Write(1, {"x"}); }).Number(), 52);
  EXPECT_EQ(Raised([&] { files_.InputField(1); }).Number(), 52);
  EXPECT_EQ(Raised([&] { files_.Close(1); }).Number(), 52);
  files_.OpenForAppend(PathOf("a.txt"), 1);
  EXPECT_EQ(Raised([&] { files_.InputField(1); }).Number(), 52);
  files_.Close(1);
  files_.OpenForInput(PathOf("a.txt"), 1);
  EXPECT_EQ(Raised([&] { files_.Print(1, "x"); }).Number(), 52);
  EXPECT_EQ(Raised([&] { files_.Print(1, "x"); }).Description(),
            "Bad file number: 1 is open for input, " + (folder_ / "a.txt"));
}

TEST_F(TextFilesTest, AMissingFileIsNotFoundForInput) {
  const Error error = Raised([&] { files_.OpenForInput(PathOf("none.ini"), 1); });
  EXPECT_EQ(error.Number(), 53);
  EXPECT_EQ(error.Description(), "File not found: " + (folder_ / "none.ini"));
  EXPECT_EQ(error.Details(), (std::vector<Error::Detail>{{"system", "No such file or directory"}}));
}

TEST_F(TextFilesTest, AMissingFolderIsAPathNotFound) {
  const Error error = Raised([&] { files_.OpenForAppend(PathOf("none\\a.txt"), 1); });
  EXPECT_EQ(error.Number(), 76);
  EXPECT_EQ(error.Description(), "Path not found: " + (folder_ / "none/a.txt"));
  EXPECT_EQ(Raised([&] { files_.OpenForInput(PathOf("none\\a.txt"), 1); }).Number(), 76);
}

TEST_F(TextFilesTest, AFolderThatIsAFileIsAPathNotFound) {
  WriteFile(folder_ / "file", "");
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(PathOf("file\\a.txt"), 1); }).Number(), 76);
}

TEST_F(TextFilesTest, AnUnknownDriveIsAPathNotFound) {
  EXPECT_EQ(Raised([&] { files_.OpenForAppend("D:\\a.txt", 1); }).Number(), 76);
}

TEST_F(TextFilesTest, AFolderInPlaceOfAFileIsAnAccessError) {
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(PathText(folder_.Path().string()), 1); }).Number(), 75);
  EXPECT_EQ(Raised([&] { files_.OpenForInput(PathText(folder_.Path().string()), 1); }).Number(), 75);
}

TEST_F(TextFilesTest, ANameThatNoFileCanHaveIsAnAccessError) {
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(PathOf(std::string(300, 'x')), 1); }).Number(), 75);
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(PathOf(std::string("a\0b", 3)), 1); }).Number(), 75);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

TEST_F(TextFilesTest, ARefusedFileIsAPermissionDenied) {
  // Nobody can write to the file of a running program.
  const Error error = Raised([&] { files_.OpenForAppend("\\proc\\self\\exe", 1); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_EQ(error.Description(), "Permission denied: /proc/self/exe");
}

TEST_F(TextFilesTest, AFullDiskIsReportedAtCloseAtTheLatestAndTheNumberIsFreeAgain) {
  files_.OpenForAppend(PathOf("a.txt"), 1);
  files_.Print(1, "x");
  const FullDisk full;
  const Error error = Raised([&] { files_.Close(1); });
  EXPECT_EQ(error.Number(), 61);
  EXPECT_EQ(error.Description(), "Disk full: " + (folder_ / "a.txt"));
  EXPECT_EQ(Raised([&] { files_.Close(1); }).Number(), 52);
}

TEST_F(TextFilesTest, AFullDiskIsReportedWhenMuchIsPrinted) {
  files_.OpenForAppend(PathOf("a.txt"), 1);
  const FullDisk full;
  EXPECT_EQ(Raised([&] { files_.Print(1, std::string(1'000'000, 'x')); }).Number(), 61);
}

TEST_F(TextFilesTest, APipeInPlaceOfAFileIsAnAccessErrorAndNothingWaits) {
  ASSERT_EQ(mkfifo((folder_ / "a.log").c_str(), 0600), 0);
  const Error error = Raised([&] { files_.OpenForAppend(PathOf("a.log"), 1); });
  EXPECT_EQ(error.Number(), 75);
  EXPECT_EQ(error.Description(),
            "Path/file access error: " + (folder_ / "a.log") + " is a named pipe, not a regular file");
  EXPECT_EQ(Raised([&] { files_.OpenForInput(PathOf("a.log"), 1); }).Number(), 75);
}

TEST_F(TextFilesTest, ALinkOfAnotherUserIsAPermissionDenied) {
  if (geteuid() != 0) GTEST_SKIP() << "Only root can make a link that belongs to somebody else.";
  std::filesystem::create_symlink("b.log", folder_ / "a.log");
  ASSERT_EQ(lchown((folder_ / "a.log").c_str(), 65533, 65533), 0);
  const Error error = Raised([&] { files_.OpenForAppend(PathOf("a.log"), 1); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_EQ(error.Description(), "Permission denied: " + (folder_ / "a.log") +
                                     " is a symbolic link of the user 65533; only links of root and of the "
                                     "program's own user are followed");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "b.log"));
}

TEST_F(TextFilesTest, AFileThatCannotBeReadIsADeviceError) {
  files_.OpenForInput("\\proc\\self\\mem", 1);  // nothing is mapped at its beginning
  EXPECT_EQ(Raised([&] { files_.InputField(1); }).Number(), 57);
}

TEST_F(TextFilesTest, ReturnsTheCurrentDirectoryAsAPathText) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.Path());
  const std::string directory = files_.CurrentDirectory();
  std::filesystem::current_path(before);
  EXPECT_EQ(directory, PathText(std::filesystem::canonical(folder_.Path()).string()));
  EXPECT_EQ(directory.find('/'), std::string::npos);
}

TEST_F(TextFilesTest, ACurrentDirectoryThatIsGoneIsAPathNotFound) {
  const auto before = std::filesystem::current_path();
  std::filesystem::create_directory(folder_ / "gone");
  std::filesystem::current_path(folder_ / "gone");
  std::filesystem::remove(folder_ / "gone");
  const Error error = Raised([&] { files_.CurrentDirectory(); });
  std::filesystem::current_path(before);
  EXPECT_EQ(error.Number(), 76);
}

}  // namespace
}  // namespace qmx::test
