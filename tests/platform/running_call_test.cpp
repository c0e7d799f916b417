// The call that is running, as a signal handler finds it.
#include "platform/running_call.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/scheduling_server.h"

namespace qmx::test {
namespace {

TEST(RunningCall, IsThereAsLongAsItLives) {
  EXPECT_EQ(RunningCall::Member(), nullptr);
  {
    const RunningCall running("A.Manager", "List");
    EXPECT_STREQ(RunningCall::ProgId(), "A.Manager");
    EXPECT_STREQ(RunningCall::Member(), "List");
  }
  EXPECT_EQ(RunningCall::Member(), nullptr);
}

TEST(RunningCall, KeepsTheProgIdForTheObjectsThatTheCallReturned) {
  { const RunningCall running("A.Manager", "List"); }
  EXPECT_STREQ(RunningCall::ProgId(), "A.Manager");
}

TEST(RunningCall, IsRestoredAfterACallBack) {
  const RunningCall outer("A.Manager", "List");
  {
    const OuterCallRestored restored;
    { const RunningCall inner("java:java.util.Date", "getYear"); }
    EXPECT_EQ(RunningCall::Member(), nullptr);
  }
  EXPECT_STREQ(RunningCall::ProgId(), "A.Manager");
  EXPECT_STREQ(RunningCall::Member(), "List");
}

TEST(RunningCall, KeepsATextOnceAndLongerThanItsOwner) {
  std::optional<std::string> text = "a text that is longer than a small one";
  const char* const kept = RunningCall::KeepText(*text);
  EXPECT_NE(kept, text->c_str());
  text.reset();
  EXPECT_STREQ(kept, "a text that is longer than a small one");
  EXPECT_EQ(RunningCall::KeepText("a text that is longer than a small one"), kept);
  EXPECT_NE(RunningCall::KeepText("another"), kept);
}

TEST(SchedulingServer, IsKnownByTheBeginningOfItsProgIds) {
  EXPECT_TRUE(IsSchedulingServers("QMXServer20.clsMessHandler"));
  EXPECT_TRUE(IsSchedulingServers("qmxSERVER20.ClientRequests"));
  EXPECT_FALSE(IsSchedulingServers("QMXServer20"));
  EXPECT_FALSE(IsSchedulingServers("QMXServer201.X"));
  EXPECT_FALSE(IsSchedulingServers("ServiceTypes.ServiceTypesManager"));
  EXPECT_FALSE(IsSchedulingServers(""));
  EXPECT_FALSE(IsSchedulingServers(nullptr));
}

}  // namespace
}  // namespace qmx::test
