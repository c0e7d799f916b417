#include "tools/qmxadmin/system/end_requests.h"

#include <gtest/gtest.h>

#include <csignal>

#include "tests/support/process.h"
#include "tests/tools/qmxadmin/system/waiting_child.h"

namespace qmx::test {
namespace {

class EndRequestsOfSignals : public testing::Test {
 protected:
  EndRequestsOfSignals() { RestoreEndingSignals(); }
};

TEST_F(EndRequestsOfSignals, AreKeptUntilTheyAreTaken) {
  EndRequests requests;
  EXPECT_TRUE(requests.Take().empty());
  raise(SIGTERM);
  raise(SIGINT);
  requests.Wait({}, std::chrono::hours(1));
  const std::vector<EndRequest> taken = requests.Take();
  ASSERT_EQ(taken.size(), 2U);
  EXPECT_EQ(taken[0].number, SIGINT);  // the kernel gives the lower number first
  EXPECT_EQ(taken[0].name, "Interrupt");
  EXPECT_EQ(taken[1].number, SIGTERM);
  EXPECT_EQ(taken[1].name, "Terminated");
  EXPECT_TRUE(requests.Take().empty());
}

TEST_F(EndRequestsOfSignals, AreNotTheEndOfAChild) {
  EndRequests requests;
  WaitingChild child;
  child.End();
  EXPECT_TRUE(requests.Take().empty());
}

TEST_F(EndRequestsOfSignals, ReachAChildToWhichTheyArePassedOn) {
  WaitingChild child;
  child.Process().PassOn({SIGTERM, "Terminated"});
  child.WaitForEnd();
  EXPECT_EQ(child.Process().ExitStatus(), 1);
}

TEST_F(EndRequestsOfSignals, EndAChildThatCannotKeepThem) {
  WaitingChild child;
  child.Process().PassOn({SIGKILL, "Killed"});
  child.WaitForEnd();
  EXPECT_EQ(child.Process().ExitStatus(), std::nullopt);
  EXPECT_EQ(child.Process().Killer(), "signal 9 (Killed)");
}

}  // namespace
}  // namespace qmx::test
