// The live line of a run on a terminal, and the lines for the process that started it.
#include <chrono>
#include <optional>
#include <thread>

#include "tests/startup/data_copy_process.h"
#include "tests/support/terminal_process.h"

namespace qmx::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// A run that cannot begin before the test lets it: the local database is locked.
class ProgressOfARun : public DataCopyProcess {
 protected:
  ProgressOfARun() {
    lock_.Open(pieces_.connection, "", "");
    lock_.Execute("begin immediate");
  }

  TerminalProcess& OnATerminal(const std::string& line) {
    return run_.emplace(QMXDATACOPY, std::vector{line}, environment_);
  }
  // A shell's words that run the program with that progress descriptor. Descriptor 3 is the file "told".
  std::vector<std::string> Telling(const std::string& number, const std::string& redirection = "") {
    return {"-c", "exec 3> '" + folder_ / "told" + "'; QMX_PROGRESS_FD=" + number + " exec \"$0\" \"$1\"" + redirection,
            QMXDATACOPY, pieces_.Line()};
  }
  // A line for the terminal would have been drawn before the first one for the descriptor.
  void AwaitTheFirstLineOfTheDescriptor() const {
    while (ReadFile(folder_ / "told").empty()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  void LetItRun() {
    if (lock_.State() == kStateOpen) lock_.Close();
  }

  Process WithDescriptor(const std::string& number) {
    LetItRun();
    return test::Run("/bin/sh", Telling(number), environment_);
  }

  SqliteDriver driver_;
  Connection lock_{{&driver_}, nullptr};
  std::optional<TerminalProcess> run_;
};

TEST_F(ProgressOfARun, IsOneLineOfTheTerminalThatIsRemovedAtTheEnd) {
  TerminalProcess& run = OnATerminal(pieces_.Line());
  run.WaitFor("rows/s");
  LetItRun();
  const TerminalRun end = run.Wait();
  EXPECT_EQ(end.status, 0);
  EXPECT_THAT(end.shown, StartsWith("\r\x1b[Ktsmdm030            0 rows          0 rows/s     0:00"));
  EXPECT_THAT(end.shown, EndsWith("\r\x1b[K"));
  EXPECT_THAT(end.shown, Not(HasSubstr("\n")));
  EXPECT_THAT(ScreenAfter(end.shown), IsEmpty());
}

TEST_F(ProgressOfARun, NamesTheTableAloneOfAnExtendedForm) {
  pieces_.table = "tcccp030=4711=E";
  TerminalProcess& run = OnATerminal(pieces_.Line());
  run.WaitFor("rows/s");
  LetItRun();
  EXPECT_THAT(run.Wait().shown, StartsWith("\r\x1b[Ktcccp030      "));
}

TEST_F(ProgressOfARun, MakesRoomForAFailure) {
  pieces_.component2 = folder_ / "none.db";
  TerminalProcess& run = OnATerminal(pieces_.Line());
  run.WaitFor("rows/s");
  LetItRun();
  const TerminalRun end = run.Wait();
  EXPECT_EQ(end.status, 1);
  EXPECT_THAT(ScreenAfter(end.shown).front(), StartsWith("error "));
  EXPECT_THAT(end.shown, Not(EndsWith("\x1b[K")));
}

TEST_F(ProgressOfARun, IsNotShownOnATerminalThatCannotDrawIt) {
  environment_["TERM"] = "dumb";
  TerminalProcess run("/bin/sh", Telling("3"), environment_);
  AwaitTheFirstLineOfTheDescriptor();
  LetItRun();
  const TerminalRun end = run.Wait();
  EXPECT_EQ(end.status, 0);
  EXPECT_THAT(end.shown, IsEmpty());
}

TEST_F(ProgressOfARun, IsNotShownIfStandardErrorIsNoTerminal) {
  TerminalProcess shell("/bin/sh", Telling("3", " 2> '" + folder_ / "err" + "'"), environment_);
  AwaitTheFirstLineOfTheDescriptor();
  LetItRun();
  const TerminalRun end = shell.Wait();
  EXPECT_EQ(end.status, 0);
  EXPECT_THAT(end.shown, IsEmpty());
  EXPECT_EQ(ReadFile(folder_ / "err"), "");
}

TEST_F(ProgressOfARun, IsWrittenToTheDescriptorThatTheEnvironmentNames) {
  const Process run = WithDescriptor("3");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(ReadFile(folder_ / "told"), EndsWith("rows 3\nend 0\n"));
  EXPECT_EQ(run.out + run.err, "");
}

TEST_F(ProgressOfARun, IsNotWrittenIfTheDescriptorIsNotOpenOrNotANumber) {
  for (const char* number : {"7", "-1", "three", "3x", "''"}) {
    EXPECT_EQ(WithDescriptor(number).status, 0) << number;
    EXPECT_EQ(ReadFile(folder_ / "told"), "") << number;
  }
}

}  // namespace
}  // namespace qmx::test
