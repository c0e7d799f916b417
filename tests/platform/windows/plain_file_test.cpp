#include "platform/system/plain_file.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <cerrno>
#include <functional>
#include <optional>

#include "platform/error.h"
#include "platform/system/text_files.h"
#include "platform/system/write_all.h"
#include "platform/windows/handle.h"
#include "platform/windows/plain_file_calls.h"
#include "tests/support/raised.h"
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

TEST_F(PlainFiles, ThatALinkOfTheProgramsUserStandsForAreOpened) {
  const PlainFileCalls before = plainFileCalls;
  plainFileCalls.formOf = [](HANDLE) { return FileForm::Link; };
  const PlainFile log = OpenPlainFile(folder_ / "log", FileUse::Append);
  plainFileCalls = before;
  EXPECT_TRUE(log.stream) << log.reason;
}

// Another program that has the file open without sharing it, and closes it in one of the pauses.
class HeldFiles : public PlainFiles {
 protected:
  HeldFiles() {
    WriteFile(folder_ / "log", "before\n");
    holder_.emplace(CreateFileW((folder_.Path() / "log").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(*holder_);
    pauses = 0;
    milliseconds = 0;
    whenPaused = [] {};
    plainFileCalls.pause = [](DWORD time) {
      ++pauses;
      milliseconds += time;
      whenPaused();
    };
  }
  ~HeldFiles() override { plainFileCalls = before_; }

  static inline int pauses;
  static inline DWORD milliseconds;
  static inline std::function<void()> whenPaused;
  std::optional<Handle> holder_;

 private:
  PlainFileCalls before_ = plainFileCalls;
};

TEST_F(HeldFiles, AreOpenedOnceTheOtherProgramHasClosedThem) {
  whenPaused = [this] {
    if (milliseconds == 200) holder_.reset();
  };
  const PlainFile file = OpenPlainFile(folder_ / "log", FileUse::Append);
  EXPECT_TRUE(file.stream) << file.reason;
  EXPECT_EQ(pauses, 8);
}

TEST_F(HeldFiles, AreReadOnceTheOtherProgramHasClosedThem) {
  whenPaused = [this] { holder_.reset(); };
  EXPECT_TRUE(OpenPlainFile(folder_ / "log", FileUse::Input).stream);
  EXPECT_EQ(pauses, 1);
}

TEST_F(HeldFiles, AreRefusedAfterASecondWithAnErrorThatSaysWho) {
  SystemTextFiles files;
  const Error error = Raised([&] { files.OpenForAppend(folder_ / "log", 1); });
  EXPECT_EQ(error.Number(), errors::kPermissionDenied);
  EXPECT_THAT(error.Description(), testing::EndsWith("log is open in another program, which does not share it"));
  EXPECT_EQ(milliseconds, 1000U);
}

TEST_F(HeldFiles, AreNotWaitedForIfSomethingElseIsWrong) {
  EXPECT_EQ(OpenPlainFile(folder_ / "none\\log", FileUse::Append).code, ENOENT);
  EXPECT_EQ(pauses, 0);
}

}  // namespace
}  // namespace qmx::test
