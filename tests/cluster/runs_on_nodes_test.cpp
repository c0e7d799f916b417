// Runs through different nodes of one cluster: one after the other, at once, and beside a program that writes the same
// rows.
#include <atomic>
#include <csignal>
#include <thread>

#include "tests/cluster/nodes.h"

namespace qmx::test::runs_on_nodes {
namespace {

using testing::HasSubstr;

constexpr int kOrders = 1500;

class RunsOnNodes : public CopyIntoACluster {
 protected:
  RunsOnNodes() : CopyIntoACluster(kOrders) {}

  void ChangeAllOrders(int day) {
    company_.Change(DateTime::FromDate(2002, 1, day), "update tssoc200 set crit = 'NEW" + std::to_string(day) + "'");
  }

  // Transactions that the cluster took back because another node's had won.
  int Conflicts() {
    int conflicts = 0;
    for (int node = 1; node <= kNodes; ++node) {
      conflicts += std::stoi(
          On(node).AskText("select sum(variable_value) from information_schema.global_status where variable_name in "
                           "('wsrep_local_cert_failures', 'wsrep_local_bf_aborts')"));
    }
    return conflicts;
  }

  std::string Checksum(int node) { return On(node).AskText("checksum table tssoc200", 1); }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RunsOnNodes);
INSTANTIATE_TEST_SUITE_P(Over, RunsOnNodes, testing::ValuesIn(ClustersUnderTest()), ServerName);

TEST_P(RunsOnNodes, OneAfterTheOtherContinueWhatTheLastOneDid) {
  ControlRecord(kTable, kFullCopy);
  const Process full = ProgramOn(1).Run(kTable);
  EXPECT_EQ(full.status, 0) << full.err;
  Sql("update tstables set syme = " + std::to_string(kOnlyChanged) + ", lutm = '" + kLutm + "'");
  ChangeAllOrders(1);
  const Process changed = ProgramOn(2).Run(kTable);
  EXPECT_EQ(changed.status, 0) << changed.err;
  for (int node = 1; node <= kNodes; ++node) {
    EXPECT_EQ(Orders(node), ErpsOrders());
    EXPECT_EQ(On(node).AskText("select count(*) from tssoc200 where crit = 'NEW1'"), std::to_string(kOrders));
    EXPECT_EQ(InUse(node), "0");
  }
}

// The second node applies nothing while its tables are locked, so that it is behind when the second run begins.
TEST_P(RunsOnNodes, OfOneTableOneAfterTheOtherAreRefusedAlsoByANodeThatIsBehind) {
  ControlRecord(kTable, kFullCopy);
  On(2).AskText("select count(*) from tstables");  // it knows the table
  On(2).CausalReads(false);
  On(2).Run("flush tables with read lock");
  const CopyProcesses first = ProgramOn(1);
  const auto copying = first.Start(kTable);
  WaitUntil("the first run has set its flag", [&] { return InUse(1) == "1"; });
  copying->Signal(SIGSTOP);

  const CopyProcesses second = ProgramOn(2);
  const auto refused = second.Start(kTable);
  WaitUntil("the second run waits for the node", [&] {
    return On(2).AskText(
               "select count(*) from information_schema.processlist where db = database() and command <> "
               "'Sleep' and id <> connection_id() and time_ms > 300") != "0";
  });
  On(2).Run("unlock tables");
  const Process ended = refused->Wait();
  EXPECT_EQ(ended.status, 3) << ended.err;
  copying->Signal(SIGCONT);
  const Process copied = copying->Wait();
  EXPECT_EQ(copied.status, 0) << copied.err;
  EXPECT_EQ(Orders(3), ErpsOrders());
}

// The second run is let in by hand, as no operator should, so that two runs write the same rows.
TEST_P(RunsOnNodes, AndAWriterThatFightForTheSameRowsLoseNothing) {
  On(1).Run("alter table tssoc200 add column touched integer not null default 0");
  ControlRecord(kTable, kFullCopy);
  EXPECT_EQ(ProgramOn(1).Run(kTable).status, 0);

  std::atomic<bool> isOver = false;
  std::atomic<int> written = 0;
  std::thread writer([&] {
    OdbcConnection session(TextOf(3));
    for (int place = 0; !isOver; place = (place + 37) % kOrders) {
      try {
        session.Run(
            "update tssoc200 set touched = touched + 1 where orno in (select orno from (select orno from tssoc200"
            " order by orno limit 5 offset " +
            std::to_string(place) + ") few)");
        ++written;
      } catch (const Error&) {  // this one has lost
      }
    }
  });

  const int before = Conflicts();
  int rounds = 0;
  int retries = 0;
  while (Conflicts() - before < 100 && rounds < 12 && !HasFailure()) {
    ChangeAllOrders(++rounds + 1);
    Sql("update tstables set in_use = 0, syme = " + std::to_string(kOnlyChanged) + ", lutm = '" + kLutm + "'");
    const CopyProcesses one = ProgramOn(1);
    const CopyProcesses two = ProgramOn(2);
    const auto first = one.Start(kTable);
    WaitUntil("the first run has set its flag", [&] { return first->HasEnded() || InUse(1) == "1"; });
    Sql("update tstables set in_use = 0");
    const auto second = two.Start(kTable);
    for (const auto& [program, run] : {std::pair(&one, first.get()), std::pair(&two, second.get())}) {
      const Process ended = run->Wait();
      EXPECT_EQ(ended.status, 0) << ended.err;
      retries += Retries(*program);
    }
    for (int node = 1; node <= kNodes; ++node) {
      EXPECT_EQ(On(node).AskText("select count(*) from tssoc200 where crit = 'NEW" + std::to_string(rounds + 1) + "'"),
                std::to_string(kOrders));
    }
  }
  isOver = true;
  writer.join();
  EXPECT_GE(Conflicts() - before, 100) << written << " statements of the writer in " << rounds << " rounds";
  EXPECT_GT(retries, 0);
  EXPECT_EQ(Orders(1), ErpsOrders());
  for (int node = 2; node <= kNodes; ++node) EXPECT_EQ(Checksum(node), Checksum(1));
}

}  // namespace
}  // namespace qmx::test::runs_on_nodes
