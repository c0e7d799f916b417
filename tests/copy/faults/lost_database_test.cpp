// The database is gone for good from the Nth operation on, for every N.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/copy/faults/faulty_run.h"

namespace qmx::test::lost_database {
namespace {

// When the database is gone for good, the release fails as well: the flag stays as it is, and the release's error ends
// the run, unless the copy had ended well before.
class LostDatabase : public testing::TestWithParam<std::tuple<std::int16_t, Place>> {};

TEST_P(LostDatabase, LeavesTheFlagAndRaisesTheReleasesErrorUnlessTheCopyHadEnded) {
  const auto& [syncMethod, place] = GetParam();
  const bool full = syncMethod == kFullCopy;
  int runsThatWereReported = 0;
  int runsThatWereNot = 0;
  std::int64_t operation = 1;
  for (;; ++operation) {
    FaultyRun run(TablesUnderFaults()[0], syncMethod, place);
    run.driver->FailFrom(operation);
    const std::string raised = run.Raised();
    if (!run.driver->HasFailed()) break;
    SCOPED_TRACE(run.FirstFailure());
    const Outcome found = run.Found(raised);
    const auto& calls = run.rig.calls;

    const bool flagSet = calls.Count("rs3.in_use = 1") == 1 && calls.Count("rs3.Update") == 1;
    const bool released = calls.Count("rs6.in_use = 0") + calls.Count("rs7.in_use = 0") == 1 &&
                          calls.Count("rs6.Update") + calls.Count("rs7.Update") == (full ? 1u : 2u);
    EXPECT_EQ(found.inUse, flagSet && !released ? "1" : "0");
    const std::vector<std::vector<std::string>> states = run.States();
    EXPECT_THAT(states, testing::Contains(found.rows));
    EXPECT_TRUE(found.lutm == "2026-11-19" || (found.lutm == "2026-11-20 14:05:09" && found.rows == states.back()))
        << found.lutm;
    // A full copy closes its record set after lutm is written, a changed copy is done by then.
    const bool copied = calls.StartingWith({"log \"Table : "}).size() > 0;
    if (copied) {
      ++runsThatWereReported;
      EXPECT_EQ(found.raised, "nothing");
      ASSERT_EQ(found.events.size(), 3u);
      EXPECT_THAT(found.events[1], testing::StartsWith("event Complete "));
      EXPECT_EQ(found.events[2], "event done");
      EXPECT_EQ(found.rows, states.back());
    } else {
      ++runsThatWereNot;
      EXPECT_THAT(found.raised, testing::EndsWith(", ReleaseCopyInProgress"));
      EXPECT_THAT(found.events,
                  testing::AnyOf(testing::IsEmpty(), testing::ElementsAre(testing::StartsWith("event Started "))));
    }
    EXPECT_FALSE(found.log.empty());
    if (HasFailure()) return;
  }
  EXPECT_GT(operation, 20) << "operations that could fail";
  EXPECT_GT(runsThatWereNot, 0);
  // A changed copy has written everything before it reports: nothing is left to fail but the release.
  EXPECT_GT(runsThatWereReported, 0);
}

std::string NameOfInstance(const testing::TestParamInfo<LostDatabase::ParamType>& instance) {
  const auto& [syncMethod, place] = instance.param;
  return std::string(syncMethod == kFullCopy ? "full" : "changed") +
         (place == Place::AboveTheBatches ? "_above" : "_below");
}

INSTANTIATE_TEST_SUITE_P(InBothModes, LostDatabase,
                         testing::Combine(testing::Values(kFullCopy, kOnlyChanged),
                                          testing::Values(Place::AboveTheBatches, Place::BelowTheBatches)),
                         NameOfInstance);

}  // namespace
}  // namespace qmx::test::lost_database
