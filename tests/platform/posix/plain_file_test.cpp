// Which files are opened as logs, and which are refused without waiting.
#include "platform/system/plain_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

constexpr uid_t kSomebodyElse = 65533;

class PlainFiles : public testing::Test {
 protected:
  // The name of a link to "target", which belongs to another user.
  std::string ForeignLink(const std::string& name, const std::string& target) {
    const std::string link = folder_ / name;
    std::filesystem::create_symlink(target, link);
    EXPECT_EQ(lchown(link.c_str(), kSomebodyElse, kSomebodyElse), 0);
    return link;
  }

  void Append(const std::string& path, const std::string& text) {
    const PlainFile file = OpenPlainFile(path, FileUse::Append);
    ASSERT_TRUE(file.stream) << file.code << file.reason;
    std::fputs(text.c_str(), file.stream.get());
  }

  TempFolder folder_;
};

class ForeignLinks : public PlainFiles {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "Only root can make a link that belongs to somebody else.";
  }
};

TEST_F(PlainFiles, AreMadeIfTheyAreMissingAndAppendedTo) {
  Append(folder_ / "a.log", "one\n");
  Append(folder_ / "a.log", "two\n");
  EXPECT_EQ(ReadFile(folder_ / "a.log"), "one\ntwo\n");
}

TEST_F(PlainFiles, AreNotMadeForInput) {
  EXPECT_EQ(OpenPlainFile(folder_ / "none", FileUse::Input).code, ENOENT);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "none"));
}

TEST_F(PlainFiles, DoNotStayOpenInProgramsThatAreStarted) {
  const PlainFile file = OpenPlainFile(folder_ / "a.log", FileUse::Append);
  ASSERT_TRUE(file.stream);
  EXPECT_EQ(fcntl(fileno(file.stream.get()), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(PlainFiles, ANamedPipeThatNobodyReadsIsRefusedAtOnce) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const PlainFile append = OpenPlainFile(folder_ / "pipe", FileUse::Append);
  EXPECT_FALSE(append.stream);
  EXPECT_EQ(append.code, EINVAL);
  EXPECT_EQ(append.reason, "is a named pipe, not a regular file");
  EXPECT_EQ(OpenPlainFile(folder_ / "pipe", FileUse::Input).reason, "is a named pipe, not a regular file");
}

TEST_F(PlainFiles, ANamedPipeThatSomebodyReadsIsRefusedToo) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const int reader = open((folder_ / "pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  EXPECT_EQ(OpenPlainFile(folder_ / "pipe", FileUse::Append).reason, "is a named pipe, not a regular file");
  close(reader);
}

TEST_F(PlainFiles, ASocketADeviceAndAFolderAreRefused) {
  const int listener = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, (folder_ / "socket").c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(OpenPlainFile(folder_ / "socket", FileUse::Append).reason, "is a socket, not a regular file");
  close(listener);
  EXPECT_EQ(OpenPlainFile("/dev/null", FileUse::Append).reason, "is a device, not a regular file");
  EXPECT_EQ(OpenPlainFile(folder_.Path().string(), FileUse::Append).code, EISDIR);
  EXPECT_EQ(OpenPlainFile(folder_.Path().string(), FileUse::Input).code, EISDIR);
}

TEST_F(PlainFiles, ALinkOfTheProgramsUserIsFollowedFromItsOwnFolder) {
  std::filesystem::create_directory(folder_ / "logs");
  std::filesystem::create_symlink("../kept.log", folder_ / "logs/a.log");
  Append(folder_ / "logs/a.log", "one\n");
  EXPECT_EQ(ReadFile(folder_ / "kept.log"), "one\n");
}

TEST_F(PlainFiles, ALinkToItselfIsRefused) {
  std::filesystem::create_symlink("a.log", folder_ / "a.log");
  EXPECT_EQ(OpenPlainFile(folder_ / "a.log", FileUse::Append).code, ELOOP);
}

TEST_F(PlainFiles, ALinkToAPipeIsRefused) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("pipe", folder_ / "a.log");
  EXPECT_EQ(OpenPlainFile(folder_ / "a.log", FileUse::Append).reason, "is a named pipe, not a regular file");
}

TEST_F(ForeignLinks, AreRefusedAndTheirFileStaysAsItWas) {
  WriteFile(folder_ / "precious", "as it was");
  const PlainFile file = OpenPlainFile(ForeignLink("a.log", "precious"), FileUse::Append);
  EXPECT_FALSE(file.stream);
  EXPECT_EQ(file.code, EACCES);
  EXPECT_EQ(file.reason,
            "is a symbolic link of the user 65533; only links of root and of the program's own user are followed");
  EXPECT_EQ(ReadFile(folder_ / "precious"), "as it was");
}

TEST_F(ForeignLinks, ToAFileThatIsMissingMakeNone) {
  EXPECT_EQ(OpenPlainFile(ForeignLink("a.log", "new"), FileUse::Append).code, EACCES);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "new"));
}

TEST_F(ForeignLinks, BehindALinkOfTheProgramsUserAreRefused) {
  WriteFile(folder_ / "precious", "as it was");
  ForeignLink("second", "precious");
  std::filesystem::create_symlink("second", folder_ / "a.log");
  EXPECT_EQ(OpenPlainFile(folder_ / "a.log", FileUse::Append).code, EACCES);
  EXPECT_EQ(OpenPlainFile(folder_ / "a.log", FileUse::Input).code, EACCES);
}

TEST_F(ForeignLinks, InPlaceOfAFolderAreFollowed) {
  std::filesystem::create_directory(folder_ / "real");
  ForeignLink("logs", "real");
  Append(folder_ / "logs/a.log", "one\n");
  EXPECT_EQ(ReadFile(folder_ / "real/a.log"), "one\n");
}

}  // namespace
}  // namespace qmx::test
