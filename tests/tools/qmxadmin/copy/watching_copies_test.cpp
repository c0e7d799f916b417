// What qmxadmin copy shows of its processes while they run and when they end otherwise than they should: with a
// qmxdatacopy that does what the test wants.
#include <csignal>
#include <fstream>
#include <optional>

#include "tests/support/terminal_process.h"
#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

using testing::AllOf;

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class WatchedCopies : public Copying {
 protected:
  WatchedCopies() : Copying(DriversUnderTest().front().make()) {
    admin_ = folder_ / "qmxadmin";
    std::filesystem::copy_file(QMX_ADMIN, admin_);
  }

  // A script that ends as qmxdatacopy does, unless it ends before.
  void DataCopyIs(const std::string& script, int status = 0) {
    const std::string number = std::to_string(status);
    std::ofstream(folder_ / "qmxdatacopy") << "#!/bin/sh\n"
                                           << script << "\necho end " << number << " >&3\nexit " << number;
    std::filesystem::permissions(folder_ / "qmxdatacopy", std::filesystem::perms::owner_all);
  }

  TerminalProcess& OnATerminal(const std::vector<std::string>& more) {
    return terminal_.emplace(admin_, Arguments(more), environment_, 140);
  }

  std::optional<TerminalProcess> terminal_;
};

TEST_F(WatchedCopies, ShowALineEachWhileTheyRunAndThenHowTheyEnded) {
  DataCopyIs("echo rows 1 >&3; echo rows 1234 >&3; while [ ! -e '" + (folder_ / "go") + "' ]; do sleep 0.05; done");
  TerminalProcess& run = OnATerminal({"tsmdm030", "tsmdm100", "--jobs", "2"});
  run.WaitFor("tsmdm030        1,234 rows");
  run.WaitFor("tsmdm100        1,234 rows");
  std::ofstream(folder_ / "go") << "";
  const TerminalRun end = run.Wait();
  EXPECT_EQ(end.status, 0);
  const std::vector<std::string> screen = ScreenAfter(end.shown);
  ASSERT_EQ(screen.size(), 5U) << end.shown;
  EXPECT_THAT(std::vector(screen.begin(), screen.begin() + 2),
              testing::UnorderedElementsAre("tsmdm030: copied", "tsmdm100: copied"));
  EXPECT_THAT(screen[2], StartsWith("TABLE     DESCRIPTION"));
  EXPECT_THAT(screen[3], StartsWith("tsmdm030  Service Types    full    copied      -        -        -"));
}

TEST_F(WatchedCopies, AreReportedInPlainLinesIfNothingCanBeDrawn) {
  DataCopyIs("echo rows 1234 >&3; sleep 0.3");
  environment_["TERM"] = "dumb";
  const TerminalRun end = OnATerminal({"tsmdm030"}).Wait();
  EXPECT_THAT(end.shown, StartsWith("tsmdm030: started\r\ntsmdm030: copied\r\nTABLE"));
  EXPECT_THAT(end.shown, Not(HasSubstr("\x1b")));
}

TEST_F(WatchedCopies, RunAtMostTheGivenNumberAtATime) {
  const std::string running = "'" + (folder_ / "running") + "'";
  const std::string count = "ls '" + folder_.Path().string() + "' | grep -c running";
  // The first one waits for the second.
  DataCopyIs("touch " + running + ".$$; until [ -e '" + (folder_ / "met") + "' ] || [ $(" + count +
             ") -ge 2 ]; do sleep 0.02; done; touch '" + (folder_ / "met") + "'; " + count + " >> '" +
             (folder_ / "counts") + "'; sleep 0.2; rm " + running + ".$$");
  EXPECT_EQ(Copy({"tsmdm030", "tsmdm100", "tsmdm105", "tsmdm130", "--jobs", "2"}).status, 0);
  const std::string counts = ReadFile(folder_ / "counts");
  EXPECT_THAT(counts, AllOf(HasSubstr("2"), Not(HasSubstr("3")), Not(HasSubstr("4"))));
}

TEST_F(WatchedCopies, AreReportedAsKilledIfASignalEndsThem) {
  DataCopyIs("kill -9 $$");
  const Process run = Copy({"tsmdm030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("tsmdm030  Service Types  full    ended by signal 9 (Killed)      -"));
  EXPECT_THAT(run.err,
              HasSubstr("tsmdm030: ended by signal 9 (Killed)\n"
                        "  The table stays in progress. \"qmxadmin release tsmdm030\" allows the next copy.\n"));
}

TEST_F(WatchedCopies, AreNotTrustedWithAStatusThatTheirMainDidNotReport) {
  for (const char* script : {"exit 0", "exit 1", "exit 3", "echo rows 7 >&3; exit 0", "echo end 1 >&3; exit 0"}) {
    DataCopyIs(script);
    const Process run = Copy({"tsmdm140", "tcccp030"});
    EXPECT_EQ(run.status, 1) << script;
    EXPECT_THAT(run.out, HasSubstr("tsmdm140  Service Employees  full    ended halfway      -        -        -"));
    EXPECT_THAT(run.out, HasSubstr("tcccp030  Calendars          full    not run"));
    EXPECT_THAT(run.err, HasSubstr("tsmdm140: ended halfway\n"
                                   "  Something other than qmxdatacopy itself ended the process.\n"
                                   "  The table may stay in progress. \"qmxadmin release tsmdm140\" allows the next "
                                   "copy.\n"));
  }
}

TEST_F(WatchedCopies, AreInterruptedIfQmxAdminIs) {
  DataCopyIs("exec sleep 60");
  for (const int signal : {SIGTERM, SIGINT}) {
    environment_["TERM"] = "dumb";
    TerminalProcess& run = OnATerminal({"tsmdm030", "tsmdm100", "tsmdm105"});
    run.WaitFor("tsmdm030: started");
    run.Signal(signal);
    const TerminalRun end = run.Wait();
    EXPECT_EQ(end.status, 1);
    EXPECT_THAT(end.shown, AllOf(HasSubstr(": no further copy is started. Running copies end at their next call to "
                                           "the ERP. A second signal ends them at once."),
                                 HasSubstr("tsmdm030: ended by signal " + std::to_string(signal) + " "),
                                 HasSubstr("Not run: tsmdm100, tsmdm105.\r\n"),
                                 HasSubstr("tsmdm100  Service Centers  full    not run")));
  }
}

TEST_F(WatchedCopies, AreReportedAsReleasedIfTheyWereInterrupted) {
  DataCopyIs(
      "trap 'echo \"error 118, Copy\" >&2; echo \"  because of error 18, Interrupted: SIGTERM\" >&2; "
      "echo end 1 >&3; exit 1' TERM; echo rows 5 >&3; while :; do sleep 0.05; done");
  TerminalProcess& run = OnATerminal({"tsmdm030", "tsmdm100"});
  run.WaitFor("5 rows");
  run.Signal(SIGTERM);
  const TerminalRun end = run.Wait();
  EXPECT_EQ(end.status, 1);
  EXPECT_THAT(end.shown,
              AllOf(HasSubstr("tsmdm030: interrupted\r\n  error 118, Copy\r\n"),
                    HasSubstr("  The table is released, so the next copy can start.\r\n"),
                    HasSubstr("tsmdm030  Service Types    full    interrupted  "), HasSubstr("Not run: tsmdm100.")));
}

TEST_F(WatchedCopies, AreInterruptedByAKeyAtTheTerminal) {
  DataCopyIs("echo rows 5 >&3; exec sleep 60");
  TerminalProcess& run = OnATerminal({"tsmdm030", "tsmdm100"});
  run.WaitFor("5 rows");
  run.Type("\x03");
  const TerminalRun end = run.Wait();
  EXPECT_EQ(end.status, 1);
  EXPECT_THAT(end.shown, AllOf(HasSubstr("tsmdm030: ended by signal 2 (Interrupt)"), HasSubstr("Not run: tsmdm100.")));
}

TEST_F(WatchedCopies, AreShownWithTheirErrorsAndNothingElse) {
  DataCopyIs("echo one; echo \"two $1\" >&2; printf 'three\\033[2J' >&2", 2);
  const Process run = Copy({"tsmdm030"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("could not start"));
  EXPECT_THAT(run.err,
              StartsWith("tsmdm030: started\ntsmdm030: could not start\n  one\n  two " + base_->ConnectionText() +
                         ",,tsmdm030," + (folder_ / "logs") + "," + component_ + "\n  three"));
  EXPECT_THAT(run.err, Not(HasSubstr("\x1b")));
}

TEST_F(WatchedCopies, AreFoundInThePathIfTheyAreNotInTheSameFolder) {
  std::filesystem::create_directory(folder_ / "elsewhere");
  DataCopyIs("");
  std::filesystem::rename(folder_ / "qmxdatacopy", folder_ / "elsewhere/qmxdatacopy");
  environment_["PATH"] = "/usr/bin:/bin";
  const Process none = Copy({"tsmdm030"});
  EXPECT_EQ(none.status, 2);
  EXPECT_THAT(none.err, HasSubstr("qmxdatacopy is neither in the folder of qmxadmin nor in a folder of $PATH."));
  environment_["PATH"] = "/usr/bin:" + (folder_ / "elsewhere");
  EXPECT_EQ(Copy({"tsmdm030"}).status, 0);
}

TEST_F(WatchedCopies, LeaveTheMethodAloneInAFullCopyThatIsKilled) {
  Sql("insert into tstables (TableName, in_use, syme) values ('tsmdm030', 0, 2)");
  DataCopyIs("echo \"$QMX_METHOD\" > '" + (folder_ / "method") + "'; kill -9 $$");
  EXPECT_EQ(Copy({"tsmdm030", "--full"}).status, 1);
  EXPECT_EQ(ReadFile(folder_ / "method"), "full\n");
  EXPECT_EQ(Rows("tstables where syme = 2"), 1);
  EXPECT_EQ(Copy({"tsmdm030"}).status, 1);
  EXPECT_EQ(ReadFile(folder_ / "method"), "\n");
}

TEST_F(WatchedCopies, AreWholeWhereThatIsAskedForElseAsTheEnvironmentSays) {
  DataCopyIs("echo \"$QMX_COPY\" > '" + (folder_ / "mode") + "'");
  const auto modeOf = [&](const std::vector<std::string>& arguments) {
    Copy(arguments);
    return ReadFile(folder_ / "mode");
  };
  EXPECT_EQ(modeOf({"tsmdm030"}), "\n");
  EXPECT_EQ(modeOf({"tsmdm030", "--whole"}), "whole\n");
  environment_["QMX_COPY"] = "whole";
  EXPECT_EQ(modeOf({"tsmdm030"}), "whole\n");
}

TEST_F(WatchedCopies, ShowThatTheyDeleteTheRowsOfAFormerCopy) {
  DataCopyIs("echo deleting >&3; while [ ! -e '" + (folder_ / "go") + "' ]; do sleep 0.05; done; echo rows 7 >&3; " +
             "while [ ! -e '" + (folder_ / "end") + "' ]; do sleep 0.05; done");
  TerminalProcess& run = OnATerminal({"tsmdm030"});
  run.WaitFor("tsmdm030     deleting");
  std::ofstream(folder_ / "go") << "";
  run.WaitFor("tsmdm030            7 rows");
  std::ofstream(folder_ / "end") << "";
  EXPECT_EQ(run.Wait().status, 0);
}

}  // namespace
}  // namespace qmx::test
