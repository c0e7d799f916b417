// Each wait below ends with the child, which ends by itself or is asked to.
#include "tools/qmxadmin/system/child_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::AnyOf;

struct Ended {
  std::string progress;
  std::string output;
};

Ended WaitFor(ChildProcess& child) {
  const EndRequests requests;
  Ended written;
  for (bool ended = false; !ended;) {
    requests.Wait({&child}, std::chrono::seconds(1));
    ended = child.HasEnded();
    written.progress += child.ReadProgress();
    written.output += child.ReadOutput();
  }
  return written;
}

TEST(AChildProcess, HasItsArgumentAsItStandsAndWritesOnTwoDescriptors) {
  for (const std::string argument : {"one", "", "a b", "\"", "\\", "a\\\\\" b\\", "Größe, 日誌", "%PATH% $HOME *"}) {
    ChildProcess child(TEST_CHILD, argument, {{"QMX_COPY", "whole"}});
    const Ended written = WaitFor(child);
    EXPECT_EQ(written.progress, "rows 7\n");
    EXPECT_EQ(written.output, argument + "\nwhole\n");
    EXPECT_EQ(child.ExitStatus(), 3);
    EXPECT_EQ(child.Killer(), "");
  }
}

TEST(AChildProcess, HasNoStatusBeforeItsEnd) {
  ChildProcess child(TEST_CHILD, "", {});
  EXPECT_EQ(child.ExitStatus(), std::nullopt);
  EXPECT_EQ(child.Killer(), "");
  WaitFor(child);
}

TEST(AChildProcess, ThatCrashesHasNoStatusButAKiller) {
  ChildProcess child(TEST_CHILD, "trap", {});
  WaitFor(child);
  EXPECT_EQ(child.ExitStatus(), std::nullopt);
  EXPECT_THAT(child.Killer(),
              AnyOf("signal 4 (Illegal instruction)", "signal 5 (Trace/breakpoint trap)", "exception 0xC000001D"));
}

TEST(AChildProcess, ThatCannotBeStartedIsAnError) {
  const Error error = Raised([] { ChildProcess("no such program", "", {}); });
  EXPECT_EQ(error.Number(), 53);
  EXPECT_THAT(error.Description(), testing::StartsWith("no such program cannot be started: "));
}

}  // namespace
}  // namespace qmx::test
