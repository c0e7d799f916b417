#include "platform/system/plain_file.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <cerrno>

#include "platform/system/write_all.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class PlainFiles : public testing::Test {
 protected:
  TempFolder folder_;
};

TEST_F(PlainFiles, AppendWhatIsWrittenAtOnceThroughTwoOpenings) {
  const PlainFile first = OpenPlainFile(folder_ / "log", FileUse::Append);
  const PlainFile second = OpenPlainFile(folder_ / "log", FileUse::Append);
  ASSERT_TRUE(first.stream && second.stream);
  EXPECT_EQ(WriteAtOnce(first.descriptor, "one\n"), 0);
  EXPECT_EQ(WriteAtOnce(second.descriptor, "two\n"), 0);
  EXPECT_EQ(WriteAtOnce(first.descriptor, "three\n"), 0);
  EXPECT_EQ(ReadFile(folder_ / "log"), "one\ntwo\nthree\n");
}

TEST_F(PlainFiles, AppendThroughTheStreamToWhatIsThereWithoutChangingLineEnds) {
  WriteFile(folder_ / "log", "before\n");
  PlainFile file = OpenPlainFile(folder_ / "log", FileUse::Append);
  ASSERT_TRUE(file.stream);
  std::fputs("\nafter\r\n", file.stream.get());
  file.stream.reset();
  EXPECT_EQ(ReadFile(folder_ / "log"), "before\n\nafter\r\n");
}

TEST_F(PlainFiles, AreReadAndMayBeRenamedMeanwhile) {
  WriteFile(folder_ / "setting", "3");
  const PlainFile file = OpenPlainFile(folder_ / "setting", FileUse::Input);
  ASSERT_TRUE(file.stream);
  std::filesystem::rename(folder_ / "setting", folder_ / "renamed");
  EXPECT_EQ(std::getc(file.stream.get()), '3');
}

TEST_F(PlainFiles, AreNotDevices) {
  for (const char* device : {"NUL", "CON", "\\\\.\\NUL"}) {
    const PlainFile file = OpenPlainFile(device, FileUse::Append);
    EXPECT_FALSE(file.stream) << device;
    EXPECT_NE(file.code, 0) << device;
  }
  EXPECT_EQ(OpenPlainFile("NUL", FileUse::Append).reason, "is a device, not a regular file");
}

TEST_F(PlainFiles, AreNotPipes) {
  const HANDLE pipe = CreateNamedPipeW(L"\\\\.\\pipe\\qmx-plain-file-test", PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 512,
                                       512, 0, nullptr);
  ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
  const PlainFile file = OpenPlainFile("\\\\.\\pipe\\qmx-plain-file-test", FileUse::Append);
  EXPECT_FALSE(file.stream);
  EXPECT_EQ(file.reason, "is a named pipe, not a regular file");
  CloseHandle(pipe);
}

TEST_F(PlainFiles, AreNotFoldersAndNotBelowAMissingFolder) {
  EXPECT_EQ(OpenPlainFile(folder_.Path().string(), FileUse::Append).code, EISDIR);
  EXPECT_EQ(OpenPlainFile(folder_ / "none\\log", FileUse::Append).code, ENOENT);
  EXPECT_EQ(OpenPlainFile(folder_ / "none", FileUse::Input).code, ENOENT);
}

}  // namespace
}  // namespace qmx::test
