// Interrupting a run: the next call to the ERP fails, and with it the copy in the ordinary way.
#include <chrono>
#include <csignal>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <thread>

#include "tests/startup/ending_component.h"
#include "tests/support/terminal_process.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kSentence =
    ": the copy ends at its next call to the ERP. A second signal ends it at once and leaves the table in progress.\n";

// A run that halts inside a call until the test lets it go on.
class AnInterruption : public EndingComponent {
 protected:
  AnInterruption() { environment_["QMX_TRACE"] = folder_ / "trace.jsonl"; }

  RunningProcess& HaltedAt(const std::string& member, int call) {
    return HaltedAt(member, call, QMXDATACOPY, {pieces_.Line()});
  }
  RunningProcess& HaltedAt(const std::string& member, int call, const std::string& program,
                           const std::vector<std::string>& arguments) {
    At(member, call, "wait " + folder_.Path().string());
    run_ = std::make_unique<RunningProcess>(program, arguments, environment_);
    while (!std::filesystem::exists(folder_ / "reached")) {
      if (run_->HasEnded()) throw std::runtime_error("the run has ended: " + run_->Wait().err);
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return *run_;
  }
  void AwaitTheHalt() const {  // of a run that has not ended
    while (!std::filesystem::exists(folder_ / "reached")) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  void LetItGoOn() { std::ofstream(folder_ / "go") << ""; }

  Process InterruptedAt(const std::string& member, int call, int signal = SIGTERM) {
    for (const char* file : {"reached", "go"}) std::filesystem::remove(folder_ / file);
    RunningProcess& run = HaltedAt(member, call);
    run.Signal(signal);
    LetItGoOn();
    return run.Wait();
  }

  std::string Trace() { return ReadFile(folder_ / "trace.jsonl"); }
  static std::size_t Count(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(piece, at)) != std::string::npos; ++at) ++count;
    return count;
  }

  std::unique_ptr<RunningProcess> run_;
};

TEST_F(AnInterruption, FailsACopyAsAnErrorDoes) {
  for (const auto& [signal, name] :
       {std::pair(SIGINT, "SIGINT"), std::pair(SIGTERM, "SIGTERM"), std::pair(SIGHUP, "SIGHUP")}) {
    Sql("delete from tsmdm030");
    const Process copy = InterruptedAt("getServiceTypeDescription", 5, signal);
    EXPECT_EQ(copy.status, 1);
    EXPECT_EQ(copy.err, std::string(name) + kSentence +
                            "error 118, Copy Service Types:  Copy of Service Types from Orvan to Local DB failed\n"
                            "  because of error 18, Interrupted: " +
                            name +
                            " asked the program to end. [member: getServiceProcedure; column: prod; table: tsmdm030; "
                            "key: cstp='T15']\n");
    EXPECT_THAT(InUse(), ElementsAre("0"));
    EXPECT_THAT(ServiceTypes(), ElementsAre("T11", "T12", "T13", "T14"));
    EXPECT_THAT(Log("tsmdm030.log"), HasSubstr("Copy of Service Types from Orvan to Local DB failed"));
  }
}

TEST_F(AnInterruption, WaitsForTheEndOfAListing) {
  Sql("insert into tsmdm030 (cstp) values ('NEW')");
  const Process copy = InterruptedAt("List", 1);
  EXPECT_EQ(copy.status, 1);
  EXPECT_THAT(copy.err, HasSubstr("because of error 18, Interrupted: SIGTERM asked the program to end. "
                                  "[member: hasMoreElements]"));
  EXPECT_THAT(InUse(), ElementsAre("0"));
  EXPECT_THAT(ServiceTypes(), ElementsAre("NEW", "OLD"));
}

TEST_F(AnInterruption, IsRaisedOnceAndNotAtTheManagersClose) {
  EXPECT_EQ(InterruptedAt("nextElement", 3).status, 1);
  EXPECT_EQ(Count(Trace(), "\"source\":\"Interrupted\""), 1U);
  EXPECT_THAT(Trace(), HasSubstr("\"member\":\"Close\",\"args\":[],\"result\":{}}"));
}

TEST_F(AnInterruption, FailsACopyByChangeAsAnErrorDoes) {
  Sql("insert into tstables (TableName, in_use, syme) values ('tsmdm030', 0, 2)");
  const Process copy = InterruptedAt("isUpdated", 3);
  EXPECT_EQ(copy.status, 1);
  EXPECT_THAT(copy.err, AllOf(HasSubstr("Copy Service Types - Only Changed"),
                              HasSubstr("error 18, Interrupted: SIGTERM asked the program to end.")));
  EXPECT_THAT(InUse(), ElementsAre("0"));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD", "T11", "T12"));
  EXPECT_THAT(Column("select count(*) from tstables where lutm is not null"), ElementsAre("0"));
}

TEST_F(AnInterruption, NeverFailsACallToTheSchedulingServer) {
  pieces_.rest = ",17";
  const Process copy = InterruptedAt("writeToMessageBox", 1);
  EXPECT_EQ(copy.status, 1);
  EXPECT_THAT(copy.err, HasSubstr("error 18, Interrupted: "));
  EXPECT_EQ(Count(Trace(), "\"member\":\"UpdateStatusByTalbe\""), 2U) << "started and failed";
  EXPECT_THAT(Trace(), AllOf(HasSubstr("Data copy FAILED"), Not(HasSubstr("initialize"))));
}

TEST_F(AnInterruption, DoesNothingIfNoCallToTheErpIsLeft) {
  const Process copy = InterruptedAt("Close", 1);
  EXPECT_EQ(copy.status, 0);
  EXPECT_EQ(copy.err, std::string("SIGTERM") + kSentence);
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("40"));
  EXPECT_THAT(InUse(), ElementsAre("0"));
}

TEST_F(AnInterruption, ByASecondSignalEndsTheRunAtOnce) {
  At("List", 1, "wait " + folder_.Path().string());
  TerminalProcess run(QMXDATACOPY, {pieces_.Line()}, environment_, 140);
  run.WaitFor("rows/s");
  AwaitTheHalt();
  run.Signal(SIGTERM);
  run.WaitFor("A second signal");
  std::this_thread::sleep_for(std::chrono::milliseconds(60));  // signals that come together count as one
  run.Signal(SIGTERM);
  const TerminalRun end = run.Wait();  // though the component never returns
  EXPECT_EQ(end.status, 128 + SIGTERM);
  EXPECT_EQ(Count(end.shown, "SIGTERM: the copy ends at its next call to the ERP."), 1U) << end.shown;
  EXPECT_THAT(end.shown, Not(HasSubstr("error 18")));
  EXPECT_THAT(InUse(), ElementsAre("1"));
}

TEST_F(AnInterruption, ByASignalThatNohupIgnoresDoesNotHappen) {
  RunningProcess& run =
      HaltedAt("getServiceType", 5, "/bin/sh", {"-c", "trap '' HUP; exec \"$0\" \"$1\"", QMXDATACOPY, pieces_.Line()});
  run.Signal(SIGHUP);
  LetItGoOn();
  const Process copy = run.Wait();
  EXPECT_EQ(copy.status, 0);
  EXPECT_EQ(copy.err, "");
}

TEST_F(AnInterruption, RemovesTheProgressLineFirst) {
  At("getServiceType", 5, "wait " + folder_.Path().string());
  TerminalProcess run(QMXDATACOPY, {pieces_.Line()}, environment_, 140);
  run.WaitFor("rows/s");
  AwaitTheHalt();
  run.Signal(SIGINT);
  run.WaitFor("A second signal");
  LetItGoOn();
  const TerminalRun end = run.Wait();
  EXPECT_EQ(end.status, 1);
  const std::vector<std::string> screen = ScreenAfter(end.shown);
  ASSERT_GE(screen.size(), 2U) << end.shown;
  EXPECT_THAT(screen.front(), StartsWith("SIGINT: the copy ends at its next call to the ERP."));
  for (const std::string& line : screen) EXPECT_THAT(line, Not(HasSubstr("rows/s")));
}

}  // namespace
}  // namespace qmx::test
