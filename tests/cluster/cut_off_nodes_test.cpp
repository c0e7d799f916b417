// A node's line falls silent before or after the node has executed something. Whatever node is asked afterwards has the
// first rows, and no later time.
#include "tests/cluster/nodes.h"
#include "tests/support/tcp_proxy.h"

namespace qmx::test::cut_off_nodes {
namespace {

using testing::HasSubstr;
using Swallowed = TcpProxy::Swallowed;

constexpr int kOrders = 400;
constexpr const char* kMiddle = "(select orno from tssoc200 order by orno limit 1 offset 200)";

class CutOffNode : public CopyIntoACluster {
 protected:
  CutOffNode() : CopyIntoACluster(kOrders) {
    company_.Change(DateTime::FromDate(2002, 1, 1), "update tssoc200 set crit = 'NEW'");
  }

  // A run through the third node, whose line is silent from `trigger` on.
  void RunUntil(const std::string& trigger, std::int16_t syncMethod, Swallowed swallowed,
                const std::string& mode = "") {
    ControlRecord(kTable, syncMethod);
    const TcpProxy line(static_cast<std::uint16_t>(std::stoi(OdbcKeyword(TextOf(3), "PORT"))), trigger, swallowed);
    CopyProcesses program = {company_, WithOdbcKeyword(TextOf(3), "PORT", std::to_string(line.Port())), ""};
    program.Environment("QMX_SILENCE_LIMIT", "5");
    program.Environment("QMX_COPY", mode);
    const Process ended = program.Run(kTable);
    EXPECT_TRUE(line.Swallows());
    ExpectFailureOfTheReleaseToo(program, ended, kTable);
    EXPECT_THAT(ended.err, HasSubstr("The server did not answer for 5 seconds while "));
  }

  std::string MiddleOrder() { return company_.Value("select orno from " + std::string(kMiddle)); }
  int Count(int node) { return std::stoi(On(node).AskText("select count(*) from tssoc200")); }

  void ExpectTheFirstOrdersEverywhereAndTheOldTime() {
    for (int node = 1; node <= kNodes; ++node) {
      ExpectTheFirstOrders(node);
      EXPECT_EQ(Orders(node), Orders(1));
      EXPECT_EQ(InUse(node), "1");
      EXPECT_EQ(Lutm(node), kLutm);
    }
  }
  void ExpectThatARunThroughAnotherNodeMendsItAfterTheRelease() {
    EXPECT_EQ(ProgramOn(1).Run(kTable).status, 3);
    Sql("update tstables set in_use = 0");
    const Process next = ProgramOn(2).Run(kTable);
    EXPECT_EQ(next.status, 0) << next.err;
    for (int node = 1; node <= kNodes; ++node) EXPECT_EQ(Orders(node), ErpsOrders());
  }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CutOffNode);
INSTANTIATE_TEST_SUITE_P(Over, CutOffNode, testing::ValuesIn(ClustersUnderTest()), ServerName);

TEST_P(CutOffNode, BeforeItAddsABatchLeavesTheRowsBeforeIt) {
  RunUntil(MiddleOrder(), kFullCopy, Swallowed::Everything);
  ExpectTheFirstOrdersEverywhereAndTheOldTime();
  EXPECT_LE(Count(1), 200);
  ExpectThatARunThroughAnotherNodeMendsItAfterTheRelease();
}

// The first batch is added in a transaction.
TEST_P(CutOffNode, AfterItHasCommittedABatchLeavesItsRowsToo) {
  RunUntil("COMMIT", kFullCopy, Swallowed::Answers);
  ExpectTheFirstOrdersEverywhereAndTheOldTime();
  EXPECT_GT(Count(1), 1);
  ExpectThatARunThroughAnotherNodeMendsItAfterTheRelease();
}

TEST_P(CutOffNode, BeforeItCommitsAGroupOfChangesLeavesNoneOfThem) {
  RunUntil("COMMIT", kOnlyChanged, Swallowed::Everything);
  ExpectTheFirstOrdersEverywhereAndTheOldTime();
  EXPECT_EQ(Count(1), 0);
  ExpectThatARunThroughAnotherNodeMendsItAfterTheRelease();
}

TEST_P(CutOffNode, AfterItHasCommittedAGroupOfChangesLeavesAllOfThem) {
  RunUntil("COMMIT", kOnlyChanged, Swallowed::Answers);
  ExpectTheFirstOrdersEverywhereAndTheOldTime();
  EXPECT_GT(Count(1), 0);
  ExpectThatARunThroughAnotherNodeMendsItAfterTheRelease();
}

// The rows and their time are new everywhere, or old everywhere.
TEST_P(CutOffNode, AfterItHasCommittedAWholeCopyLeavesAllRowsWithTheirTime) {
  RunUntil("COMMIT", kFullCopy, Swallowed::Answers, "whole");
  for (int node = 1; node <= kNodes; ++node) {
    EXPECT_EQ(Orders(node), ErpsOrders());
    EXPECT_NE(Lutm(node), kLutm);
  }
}

TEST_P(CutOffNode, BeforeItCommitsAWholeCopyLeavesNothing) {
  RunUntil("COMMIT", kFullCopy, Swallowed::Everything, "whole");
  ExpectTheFirstOrdersEverywhereAndTheOldTime();
  EXPECT_EQ(Count(1), 0);
}

}  // namespace
}  // namespace qmx::test::cut_off_nodes
