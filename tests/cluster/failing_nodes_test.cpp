// A node is killed or falls silent in the middle of a copy. Whatever node is asked afterwards has the first rows, and
// no later time.
#include <csignal>
#include <cstdlib>

#include "tests/cluster/nodes.h"

namespace qmx::test::failing_nodes {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr int kOrders = 800;

class FailingNode : public CopyIntoACluster {
 protected:
  FailingNode() : CopyIntoACluster(kOrders) {
    company_.Change(DateTime::FromDate(2002, 1, 1), "update tssoc200 set crit = 'NEW'");
  }

  void SignalNode(int node, int signal) { kill(std::stoi(OfNode(node, "_PID")), signal); }

  // A run through the third node, which fails once an order is copied. Returns how the run ended.
  Process RunWhileItsNodeFails(std::int16_t syncMethod, int signal) {
    ControlRecord(kTable, syncMethod);
    CopyProcesses program = ProgramOn(3);
    program.Environment("QMX_SILENCE_LIMIT", "5");
    const auto run = program.Start(kTable);
    WaitUntil("an order is copied", [&] { return On(1).AskText("select count(*) from tssoc200") != "0"; });
    run->Signal(SIGSTOP);
    SignalNode(3, signal);
    run->Signal(SIGCONT);
    const Process ended = run->Wait();
    ExpectFailureOfTheReleaseToo(program, ended, kTable);
    return ended;
  }

  int Queries() { return std::stoi(On(1).AskText("show global status like 'Queries'", 1)); }

  void ExpectAPrefixOnTheOthersAndThatTheNextRunMendsIt() {
    WaitUntil("the others go on without it",
              [&] { return On(1).AskText("show status like 'wsrep_cluster_size'", 1) == "2"; });
    for (const int node : {1, 2}) {
      ExpectTheFirstOrders(node);
      EXPECT_EQ(InUse(node), "1");
      EXPECT_EQ(Lutm(node), kLutm);
      EXPECT_EQ(Orders(node), Orders(1));
    }
    EXPECT_EQ(ProgramOn(2).Run(kTable).status, 3);
    Sql("update tstables set in_use = 0");
    const Process next = ProgramOn(2).Run(kTable);
    EXPECT_EQ(next.status, 0) << next.err;
    EXPECT_EQ(Orders(1), ErpsOrders());
  }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FailingNode);
INSTANTIATE_TEST_SUITE_P(Over, FailingNode, testing::ValuesIn(ClustersUnderTest()), ServerName);

// The others wait until they take the silent node for lost, and go on. When it answers again, it catches up.
TEST_P(FailingNode, WhichIsStoppedInAFullCopyEndsItsRunAndOnlyDelaysThoseOfTheOthers) {
  const Process ended = RunWhileItsNodeFails(kFullCopy, SIGSTOP);
  EXPECT_THAT(ended.err, HasSubstr("The server did not answer for 5 seconds while "));
  ExpectAPrefixOnTheOthersAndThatTheNextRunMendsIt();
  SignalNode(3, SIGCONT);
  const std::string restarted = TextOf(3);
  WaitUntil("the node is back", [&] {
    try {
      return OdbcConnection(restarted).AskText("select concat(count(*), ' ', max(orno)) from tssoc200") == ErpsOrders();
    } catch (const Error&) {  // it does not serve statements yet
      return false;
    }
  });
}

TEST_P(FailingNode, WhichIsKilledInAFullCopyLeavesTheFirstRowsOnTheOthers) {
  const Process ended = RunWhileItsNodeFails(kFullCopy, SIGKILL);
  EXPECT_THAT(ended.err,
              HasSubstr("The connection to the server is lost; check that the server runs, then copy again."));
  ExpectAPrefixOnTheOthersAndThatTheNextRunMendsIt();
}

TEST_P(FailingNode, WhichIsKilledInAChangedCopyLeavesTheFirstChangesOnTheOthers) {
  const Process ended = RunWhileItsNodeFails(kOnlyChanged, SIGKILL);
  EXPECT_THAT(ended.err,
              HasSubstr("The connection to the server is lost; check that the server runs, then copy again."));
  ExpectAPrefixOnTheOthersAndThatTheNextRunMendsIt();
}

// Without the majority a node serves no statement. A run waits until the operator makes it the cluster.
TEST_P(FailingNode, WhichLosesTheMajorityIsTriedAgainAndServesTheRunOnceItIsTheCluster) {
  ControlRecord(kTable, kFullCopy);
  On(1);
  for (const int node : {2, 3}) SignalNode(node, SIGKILL);
  const auto isReady = [&](const char* ready) { return On(1).AskText("show status like 'wsrep_ready'", 1) == ready; };
  WaitUntil("the node has lost the majority", [&] { return isReady("OFF"); });
  const CopyProcesses program = ProgramOn(1);
  const int first = Queries();
  int others = Queries();
  const int own = others - first;  // for each question
  const auto run = program.Start(kTable);
  // More statements than a run sends before it reads the first row.
  WaitUntil("the run tries again", [&] { return run->HasEnded() || Queries() - (others += own) > 30; });
  On(1).Run("set global wsrep_provider_options = 'pc.bootstrap=yes'");
  WaitUntil("the node is ready", [&] { return isReady("ON"); });
  const Process ended = run->Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_GT(Retries(program), 5);
  EXPECT_EQ(Orders(1), ErpsOrders());
}

}  // namespace
}  // namespace qmx::test::failing_nodes
