#include "platform/system/write_all.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <thread>
#include <utility>

namespace qmx::test {
namespace {

class WritingAll : public testing::Test {
 protected:
  WritingAll() { EXPECT_EQ(pipe(ends_.data()), 0); }
  ~WritingAll() override { CloseEnds(); }

  void CloseEnds() {
    for (int& end : ends_) {
      if (end >= 0) close(end);
      end = -1;
    }
  }

  std::array<int, 2> ends_{};
};

TEST_F(WritingAll, TakesAsManyWritesAsALongTextNeeds) {
  const std::string text(1 << 20, 'x');  // more than a pipe holds
  std::thread writer([&] {
    WriteAll(ends_[1], text);
    close(std::exchange(ends_[1], -1));
  });
  std::string read;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = ::read(ends_[0], buffer.data(), buffer.size())) > 0;) {
    read.append(buffer.data(), static_cast<std::size_t>(count));
  }
  writer.join();
  EXPECT_EQ(read.size(), text.size());
  EXPECT_EQ(read, text);
}

TEST_F(WritingAll, FailsIfNobodyReads) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  close(std::exchange(ends_[0], -1));
  WriteAll(ends_[1], "nobody reads this");
  EXPECT_EQ(errno, EPIPE);
  std::signal(SIGPIPE, before);
  WriteAll(-1, "nor this");
  EXPECT_EQ(errno, EBADF);
}

TEST_F(WritingAll, AtOnceIsOneWriteOrNothingAndSaysWhy) {
  EXPECT_EQ(WriteAtOnce(ends_[1], "record"), 0);
  std::array<char, 64> buffer{};
  EXPECT_EQ(::read(ends_[0], buffer.data(), buffer.size()), 6);
  EXPECT_STREQ(buffer.data(), "record");
  EXPECT_EQ(WriteAtOnce(-1, "record"), EBADF);
}

TEST_F(WritingAll, AtOnceCallsATextThatWasCutShortAFullDisk) {
  fcntl(ends_[1], F_SETFL, O_NONBLOCK);
  EXPECT_EQ(WriteAtOnce(ends_[1], std::string(1 << 20, 'x')), ENOSPC);  // more than a pipe holds
}

}  // namespace
}  // namespace qmx::test
