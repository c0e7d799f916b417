// The line that a run draws on its terminal.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>

#include "platform/database.h"
#include "platform/error.h"
#include "platform/progress/progress.h"
#include "tests/support/environment.h"
#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class ProgressOnATerminal : public testing::Test {
 protected:
  ProgressOnATerminal() {
    winsize size{};
    size.ws_col = 40;
    EXPECT_EQ(openpty(&seen_, &terminal_, nullptr, nullptr, &size), 0);
    fcntl(seen_, F_SETFL, O_NONBLOCK);
  }
  ~ProgressOnATerminal() override {
    for (const int descriptor : {seen_, terminal_}) close(descriptor);
  }

  std::string Shown() const {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(seen_, buffer.data(), buffer.size())) > 0;) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

  static void Save(DatabaseObserver& observer, int rows) {
    for (int row = 0; row < rows; ++row) observer.RowSaved("tssoc200");
  }

  // Until the helper has looked so many times. It draws at each look, and writes at every second one.
  void PassLooks(int looks) {
    for (int look = 0; look < looks; ++look) clock_.PassWhileAThreadWaits(std::chrono::milliseconds(125));
  }

  FakeSteadyClock clock_;
  int seen_ = -1, terminal_ = -1;
};

TEST_F(ProgressOnATerminal, AShortRunShowsNothing) {
  {
    Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
    clock_.PassWhileAThreadWaits(std::chrono::milliseconds(0));
    clock_.Pass(std::chrono::milliseconds(124));
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(ProgressOnATerminal, ARunShowsItsFirstLineAfterAnEighthOfASecond) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  clock_.PassWhileAThreadWaits(std::chrono::milliseconds(124));
  EXPECT_THAT(Shown(), IsEmpty());
  clock_.PassWhileAThreadWaits(std::chrono::milliseconds(1));
  EXPECT_THAT(Shown(), HasSubstr("tssoc200            0 rows"));
}

TEST_F(ProgressOnATerminal, ALongerRunShowsItsRowsAndClearsThem) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  Save(progress.Counter(), 1200);
  PassLooks(1);
  progress.End();
  EXPECT_THAT(Shown(), MatchesRegex("\r\x1b.Ktssoc200        1,200 rows  .*\r\x1b.K"));
  progress.End();
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(ProgressOnATerminal, ALineIsNeverAsWideAsTheTerminal) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  PassLooks(1);
  progress.End();
  EXPECT_EQ(Shown(), "\r\x1b[Ktssoc200            0 rows          0 r\r\x1b[K");
}

TEST_F(ProgressOnATerminal, ALineThatDoesNotChangeIsDrawnOnce) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  PassLooks(7);  // the time it shows changes once a second
  progress.End();
  const std::string shown = Shown();
  std::size_t drawings = 0;
  for (std::size_t at = shown.find("tssoc200"); at != std::string::npos; at = shown.find("tssoc200", at + 1))
    ++drawings;
  EXPECT_EQ(drawings, 1U) << shown;
}

TEST_F(ProgressOnATerminal, ALineThatWrapsBecauseTheTerminalBecameNarrowerIsRemovedWhole) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  PassLooks(1);
  winsize size{};
  size.ws_col = 20;  // a line of 39 characters now takes two rows
  ASSERT_EQ(ioctl(terminal_, TIOCSWINSZ, &size), 0);
  PassLooks(1);
  progress.End();
  EXPECT_THAT(Shown(), HasSubstr("\x1b[1A\r\x1b[Jtssoc200           \r\x1b[K"));
}

TEST_F(ProgressOnATerminal, AFailureIsReportedAfterTheLineIsRemoved) {
  struct Failures : FailureReport {
    explicit Failures(int to) : terminal(to) {}
    void Report(const Error&) noexcept override { EXPECT_EQ(write(terminal, "failed", 6), 6); }
    int terminal;
  } failures(terminal_);
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  ReportAfterProgress report(failures, &progress);
  PassLooks(1);
  report.Report(Error(5, "", ""));
  EXPECT_THAT(Shown(), EndsWith("\r\x1b[Kfailed"));
}

TEST_F(ProgressOnATerminal, ARunThatDeletesShowsSoOnTheTerminal) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  progress.Counter().Executing("delete from TSSOC200 where 1=1");
  PassLooks(1);
  progress.End();
  EXPECT_THAT(Shown(), HasSubstr("\r\x1b[Ktssoc200     deleting"));
}

TEST_F(ProgressOnATerminal, IsNotShownOnADumbTerminalIfNobodyListens) {
  const EnvironmentVariable dumb("TERM", "dumb");
  EXPECT_EQ(Progress::FromEnvironment("tssoc200"), nullptr);
}

}  // namespace
}  // namespace qmx::test
