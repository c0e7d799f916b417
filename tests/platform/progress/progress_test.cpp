#include "platform/progress/progress.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>

#include "platform/database.h"
#include "platform/error.h"
#include "tests/support/environment.h"
#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class ProgressOf : public testing::Test {
 protected:
  ProgressOf() {
    winsize size{};
    size.ws_col = 40;
    EXPECT_EQ(openpty(&seen_, &terminal_, nullptr, nullptr, &size), 0);
    EXPECT_EQ(pipe(pipe_.data()), 0);
    fcntl(seen_, F_SETFL, O_NONBLOCK);
    fcntl(pipe_[0], F_SETFL, O_NONBLOCK);
  }
  ~ProgressOf() override {
    for (const int descriptor : {seen_, terminal_, pipe_[0], pipe_[1]}) close(descriptor);
  }

  static std::string ReadAll(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(descriptor, buffer.data(), buffer.size())) > 0;) {
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
  std::array<int, 2> pipe_{};
};

TEST_F(ProgressOf, AShortRunShowsNothing) {
  {
    Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
    clock_.PassWhileAThreadWaits(std::chrono::milliseconds(0));
    clock_.Pass(std::chrono::milliseconds(124));
  }
  EXPECT_THAT(ReadAll(seen_), IsEmpty());
}

TEST_F(ProgressOf, ARunShowsItsFirstLineAfterAnEighthOfASecond) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  clock_.PassWhileAThreadWaits(std::chrono::milliseconds(124));
  EXPECT_THAT(ReadAll(seen_), IsEmpty());
  clock_.PassWhileAThreadWaits(std::chrono::milliseconds(1));
  EXPECT_THAT(ReadAll(seen_), HasSubstr("tssoc200            0 rows"));
}

TEST_F(ProgressOf, ALongerRunShowsItsRowsAndClearsThem) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  Save(progress.Counter(), 1200);
  PassLooks(1);
  progress.End();
  EXPECT_THAT(ReadAll(seen_), MatchesRegex("\r\x1b.Ktssoc200        1,200 rows  .*\r\x1b.K"));
  progress.End();
  EXPECT_THAT(ReadAll(seen_), IsEmpty());
}

TEST_F(ProgressOf, ALineIsNeverAsWideAsTheTerminal) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  PassLooks(1);
  progress.End();
  EXPECT_EQ(ReadAll(seen_), "\r\x1b[Ktssoc200            0 rows          0 r\r\x1b[K");
}

TEST_F(ProgressOf, ALineThatDoesNotChangeIsDrawnOnce) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  PassLooks(7);  // the time it shows changes once a second
  progress.End();
  const std::string shown = ReadAll(seen_);
  std::size_t drawings = 0;
  for (std::size_t at = shown.find("tssoc200"); at != std::string::npos; at = shown.find("tssoc200", at + 1))
    ++drawings;
  EXPECT_EQ(drawings, 1U) << shown;
}

TEST_F(ProgressOf, ALineThatWrapsBecauseTheTerminalBecameNarrowerIsRemovedWhole) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  PassLooks(1);
  winsize size{};
  size.ws_col = 20;  // a line of 39 characters now takes two rows
  ASSERT_EQ(ioctl(terminal_, TIOCSWINSZ, &size), 0);
  PassLooks(1);
  progress.End();
  EXPECT_THAT(ReadAll(seen_), HasSubstr("\x1b[1A\r\x1b[Jtssoc200           \r\x1b[K"));
}

TEST_F(ProgressOf, AFailureIsReportedAfterTheLineIsRemoved) {
  struct Failures : FailureReport {
    explicit Failures(int to) : terminal(to) {}
    void Report(const Error&) noexcept override { EXPECT_EQ(write(terminal, "failed", 6), 6); }
    int terminal;
  } failures(terminal_);
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  ReportAfterProgress report(failures, &progress);
  PassLooks(1);
  report.Report(Error(5, "", ""));
  EXPECT_THAT(ReadAll(seen_), EndsWith("\r\x1b[Kfailed"));
}

TEST_F(ProgressOf, ALongerRunIsWrittenWhileItRunsAndAtItsEnd) {
  Progress progress("tssoc200", Progress::kNobody, pipe_[1], clock_);
  DatabaseObserver& observer = progress.Counter();
  Save(observer, 10);
  PassLooks(1);
  EXPECT_EQ(ReadAll(pipe_[0]), "");
  PassLooks(1);
  EXPECT_EQ(ReadAll(pipe_[0]), "rows 10\n");
  PassLooks(2);
  EXPECT_EQ(ReadAll(pipe_[0]), "") << "a number that has not changed";
  Save(observer, 5);
  progress.End();
  EXPECT_EQ(ReadAll(pipe_[0]), "rows 15\n");
  EXPECT_THAT(ReadAll(seen_), IsEmpty());
}

TEST_F(ProgressOf, AReaderThatDoesNotKeepUpCostsNoTime) {
  fcntl(pipe_[1], F_SETFL, O_NONBLOCK);
  const std::string block(4096, 'x');
  while (write(pipe_[1], block.data(), block.size()) > 0) continue;
  fcntl(pipe_[1], F_SETFL, 0);
  Progress progress("tssoc200", Progress::kNobody, pipe_[1], clock_);
  Save(progress.Counter(), 10);
  PassLooks(2);
  progress.End();  // would wait for ever
  EXPECT_THAT(ReadAll(pipe_[0]), Not(HasSubstr("rows")));
}

TEST_F(ProgressOf, ARunEndsWithTheStatusOfItsMain) {
  Progress::TellEnd(pipe_[1], 3);
  EXPECT_EQ(ReadAll(pipe_[0]), "end 3\n");
  Progress::TellEnd(Progress::kNobody, 3);
  EXPECT_THAT(ReadAll(pipe_[0]), IsEmpty());
}

TEST_F(ProgressOf, ARunIsNotWrittenIfTheEnvironmentNamesNoDescriptor) {
  const EnvironmentVariable dumb("TERM", "dumb");
  EXPECT_EQ(Progress::FromEnvironment("tssoc200"), nullptr);
  const EnvironmentVariable listener("QMX_PROGRESS_FD", std::to_string(pipe_[1]).c_str());
  EXPECT_NE(Progress::FromEnvironment("tssoc200"), nullptr);
  EXPECT_EQ(fcntl(pipe_[1], F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);  // programs that the run starts do not keep it open
}

TEST_F(ProgressOf, ARunThatDeletesSaysSoUntilItAddsRows) {
  Progress progress("tssoc200", Progress::kNobody, pipe_[1], clock_);
  DatabaseObserver& observer = progress.Counter();
  observer.Executing("DELETE FROM tssoc200 WHERE 1=1");
  PassLooks(2);
  EXPECT_EQ(ReadAll(pipe_[0]), "deleting\n");
  observer.Executed("DELETE FROM tssoc200 WHERE 1=1", 5, nullptr);
  progress.End();
  EXPECT_EQ(ReadAll(pipe_[0]), "rows 0\n");
}

TEST_F(ProgressOf, ARunThatDeletesShowsSoOnTheTerminal) {
  Progress progress("tssoc200", terminal_, Progress::kNobody, clock_);
  progress.Counter().Executing("delete from TSSOC200 where 1=1");
  PassLooks(1);
  progress.End();
  EXPECT_THAT(ReadAll(seen_), HasSubstr("\r\x1b[Ktssoc200     deleting"));
}

}  // namespace
}  // namespace qmx::test
