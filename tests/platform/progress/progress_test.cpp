#include "platform/progress/progress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/database.h"
#include "tests/support/environment.h"
#include "tests/support/fake_steady_clock.h"
#include "tests/support/pipe_to_read.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ProgressOf : public testing::Test {
 protected:
  static void Save(DatabaseObserver& observer, int rows) {
    for (int row = 0; row < rows; ++row) observer.RowSaved("tssoc200");
  }

  // Until the helper has looked so many times. It draws at each look, and writes at every second one.
  void PassLooks(int looks) {
    for (int look = 0; look < looks; ++look) clock_.PassWhileAThreadWaits(std::chrono::milliseconds(125));
  }

  FakeSteadyClock clock_;
  PipeToRead pipe_;
};

TEST_F(ProgressOf, ALongerRunIsWrittenWhileItRunsAndAtItsEnd) {
  Progress progress("tssoc200", Progress::kNobody, pipe_.Writer(), clock_);
  DatabaseObserver& observer = progress.Counter();
  Save(observer, 10);
  PassLooks(1);
  EXPECT_EQ(pipe_.ReadAll(), "");
  PassLooks(1);
  EXPECT_EQ(pipe_.ReadAll(), "rows 10\n");
  PassLooks(2);
  EXPECT_EQ(pipe_.ReadAll(), "") << "a number that has not changed";
  Save(observer, 5);
  progress.End();
  EXPECT_EQ(pipe_.ReadAll(), "rows 15\n");
}

TEST_F(ProgressOf, AReaderThatDoesNotKeepUpCostsNoTime) {
  const EnvironmentVariable listener("QMX_PROGRESS_FD", pipe_.NumberForPrograms().c_str());
  const int writer = Progress::ListenerFromEnvironment();
  if (!pipe_.Fill()) GTEST_SKIP() << "Nobody knows here how much a pipe takes.";
  Progress progress("tssoc200", Progress::kNobody, writer, clock_);
  Save(progress.Counter(), 10);
  PassLooks(2);
  progress.End();  // would wait for ever
  EXPECT_THAT(pipe_.ReadAll(), Not(HasSubstr("rows")));
}

TEST_F(ProgressOf, ARunEndsWithTheStatusOfItsMain) {
  Progress::TellEnd(pipe_.Writer(), 3);
  EXPECT_EQ(pipe_.ReadAll(), "end 3\n");
  Progress::TellEnd(Progress::kNobody, 3);
  EXPECT_THAT(pipe_.ReadAll(), IsEmpty());
}

TEST_F(ProgressOf, ARunIsWrittenOnTheDescriptorThatTheEnvironmentNames) {
  EXPECT_EQ(Progress::ListenerFromEnvironment(), Progress::kNobody);
  const EnvironmentVariable listener("QMX_PROGRESS_FD", pipe_.NumberForPrograms().c_str());
  ASSERT_TRUE(pipe_.IsInherited());
  EXPECT_NE(Progress::FromEnvironment("tssoc200"), nullptr);
  EXPECT_FALSE(pipe_.IsInherited());  // programs that the run starts do not keep it open
}

TEST_F(ProgressOf, ARunThatDeletesSaysSoUntilItAddsRows) {
  Progress progress("tssoc200", Progress::kNobody, pipe_.Writer(), clock_);
  DatabaseObserver& observer = progress.Counter();
  observer.Executing("DELETE FROM tssoc200 WHERE 1=1");
  PassLooks(2);
  EXPECT_EQ(pipe_.ReadAll(), "deleting\n");
  observer.Executed("DELETE FROM tssoc200 WHERE 1=1", 5, nullptr);
  progress.End();
  EXPECT_EQ(pipe_.ReadAll(), "rows 0\n");
}

}  // namespace
}  // namespace qmx::test
