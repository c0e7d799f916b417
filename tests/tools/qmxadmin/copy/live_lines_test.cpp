#include "tools/qmxadmin/copy/live_lines.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>

#include "tests/support/environment.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;

// Standard error is a terminal of the test.
class LinesOnATerminal : public testing::Test {
 protected:
  LinesOnATerminal() : before_(dup(STDERR_FILENO)) {
    winsize size{};
    size.ws_col = 40;
    EXPECT_EQ(openpty(&seen_, &terminal_, nullptr, nullptr, &size), 0);
    fcntl(seen_, F_SETFL, O_NONBLOCK);
    dup2(terminal_, STDERR_FILENO);
  }
  ~LinesOnATerminal() override {
    dup2(before_, STDERR_FILENO);
    for (const int descriptor : {before_, seen_, terminal_}) close(descriptor);
  }

  std::string Seen() const {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(seen_, buffer.data(), buffer.size())) > 0;) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
  }
  void Resize(unsigned short columns) const {
    winsize size{};
    size.ws_col = columns;
    EXPECT_EQ(ioctl(terminal_, TIOCSWINSZ, &size), 0);
  }

  EnvironmentVariable type_{"TERM", "xterm"};
  int before_ = -1, seen_ = -1, terminal_ = -1;
  const LiveLines::Clock::time_point start_ = LiveLines::Clock::now();
};

TEST_F(LinesOnATerminal, AreRedrawnInPlace) {
  LiveLines lines(false);
  lines.Draw({"one", "two"}, start_);
  EXPECT_EQ(Seen(), "\r\x1b[Jone\r\ntwo\r\n");
  lines.Draw({"one", "three"}, start_ + milliseconds(100));
  EXPECT_EQ(Seen(), "\x1b[2A\r\x1b[Jone\r\nthree\r\n");
}

TEST_F(LinesOnATerminal, AreRedrawnTenTimesASecondAtMost) {
  LiveLines lines(false);
  lines.Draw({"1"}, start_);
  Seen();
  lines.Draw({"2"}, start_ + milliseconds(99));
  EXPECT_EQ(Seen(), "");
  lines.Draw({"3"}, start_ + milliseconds(100));
  EXPECT_EQ(Seen(), "\x1b[1A\r\x1b[J3\r\n");
}

TEST_F(LinesOnATerminal, AreNotRedrawnIfNothingChanged) {
  LiveLines lines(false);
  lines.Draw({"one"}, start_);
  Seen();
  lines.Draw({"one"}, start_ + std::chrono::seconds(1));
  EXPECT_EQ(Seen(), "");
  Resize(80);
  lines.Draw({"one"}, start_ + std::chrono::seconds(2));
  EXPECT_EQ(Seen(), "\x1b[1A\r\x1b[Jone\r\n");
}

TEST_F(LinesOnATerminal, AreRemovedWholeIfTheTerminalBecameNarrower) {
  LiveLines lines(false);
  lines.Draw({std::string(50, 'x'), "two"}, start_);
  EXPECT_EQ(Seen(), "\r\x1b[J" + std::string(38, 'x') + "…\r\ntwo\r\n");
  Resize(10);  // the first line now takes four rows
  lines.Draw({"new"}, start_ + milliseconds(100));
  EXPECT_EQ(Seen(), "\x1b[5A\r\x1b[Jnew\r\n");
}

TEST_F(LinesOnATerminal, MakeRoomForPrintedLinesAtOnce) {
  LiveLines lines(false);
  lines.Draw({"one"}, start_);
  Seen();
  lines.Print("done");
  EXPECT_EQ(Seen(), "\x1b[1A\r\x1b[Jdone\r\n");
  lines.Draw({"two"}, start_ + milliseconds(1));  // in place of none
  EXPECT_EQ(Seen(), "\r\x1b[Jtwo\r\n");
}

TEST_F(LinesOnATerminal, AreOnlyPrintedOnesIfItIsQuiet) {
  LiveLines lines(true);
  lines.Draw({"one"}, start_);
  EXPECT_EQ(Seen(), "");
  lines.Print("failed");
  EXPECT_EQ(Seen(), "failed\r\n");
}

}  // namespace
}  // namespace qmx::test
