// The database takes back an operation of a copy, and the open transaction with it, and asks to try again: at every
// operation, once, twice and for good.
//
// All tables share their steps, so two of them are enough: one with a text for its key, and one whose records are read
// again. With QMX_TEST_EVERY_TABLE=1 every table is copied.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/copy/faults/faulty_run.h"

namespace qmx::test::asked_again {
namespace {

using std::chrono::seconds;
using testing::AnyOf;
using testing::Contains;
using testing::UnorderedElementsAreArray;

class AskedAgain : public testing::TestWithParam<std::tuple<CopiedTable, std::int16_t>> {
 protected:
  const CopiedTable& table_ = std::get<0>(GetParam());
  const std::int16_t syncMethod_ = std::get<1>(GetParam());
  bool isWhole_ = false;

  // Runs once for each operation of a run, with faults set by `fail`. Returns the number of runs in which one failed.
  template <typename Fail, typename Check>
  std::int64_t AtEveryOperation(Fail&& fail, Check&& check) {
    for (std::int64_t operation = 1;; ++operation) {
      FaultyRun run(table_, syncMethod_, Place::BelowTheBatches);
      run.rig.declarations.copiesWhole = isWhole_;
      run.driver->FailAs(FaultKind::AsksAgain);
      fail(*run.driver, operation);
      const std::string raised = run.Raised();
      if (!run.driver->HasFailed()) return operation - 1;
      SCOPED_TRACE(run.driver->FirstFailed());
      check(run, run.Found(raised));
      if (HasFailure()) return operation;
    }
  }

  // The end of a connection saves nothing, so no database can ask to try it again.
  static bool IsAtTheEnd(const FaultyRun& run) { return run.driver->FirstFailed().ends_with(": Close"); }

  static void ExpectWhatARunWithoutFaultGives(FaultyRun& run, const Outcome& found, const Outcome& usual) {
    EXPECT_EQ(found.rows, usual.rows);
    EXPECT_EQ(found.lutm, usual.lutm);
    EXPECT_EQ(found.inUse, "0");
    EXPECT_EQ(found.raised, "nothing");
    if (IsAtTheEnd(run)) return;
    EXPECT_EQ(found.events, usual.events);
    EXPECT_EQ(found.log, usual.log);
    EXPECT_EQ(found.reported, "nothing");
    EXPECT_GE(run.rig.Retries(), run.driver->Failures());  // a group and the select within it count twice
    EXPECT_LT(run.pauses.Skipped(), seconds(1));
  }

  Outcome Usual() {
    FaultyRun run(table_, syncMethod_, Place::BelowTheBatches);
    Outcome usual = run.Found(run.Raised());
    EXPECT_THAT(usual.rows, UnorderedElementsAreArray(run.States().back()));
    EXPECT_EQ(usual.lutm, "2026-11-20 14:05:09");
    return usual;
  }
};

class AskedAgainForLong : public AskedAgain {};

TEST_P(AskedAgain, OnceACopyDoesWhatItDoesWithout) {
  const Outcome usual = Usual();
  const std::int64_t runs = AtEveryOperation(
      [](FaultyDriver& driver, std::int64_t at) { driver.FailAt(at); },
      [&](FaultyRun& run, const Outcome& found) { ExpectWhatARunWithoutFaultGives(run, found, usual); });
  EXPECT_GT(runs, 30);
}

TEST_P(AskedAgainForLong, TwiceACopyDoesWhatItDoesWithout) {
  const Outcome usual = Usual();
  for (const int distance : {1, 3}) {
    AtEveryOperation(
        [&](FaultyDriver& driver, std::int64_t at) {
          driver.FailAt({at, at + distance});
        },
        [&](FaultyRun& run, const Outcome& found) {
          if (run.driver->Failures() == 2 && run.driver->Record().back() != "Close") {
            ExpectWhatARunWithoutFaultGives(run, found, usual);
          }
        });
  }
}

// The failed statement waits for the time-out, and so do the release, what it reads, and the connection's end. The
// longest time-out is the deletion's, 150 seconds.
TEST_P(AskedAgainForLong, ForGoodACopyFailsWithinTheTimeOutsAndTheNextOneMendsIt) {
  AtEveryOperation([](FaultyDriver& driver, std::int64_t at) { driver.FailFrom(at); },
                   [](FaultyRun& run, const Outcome& found) {
                     EXPECT_THAT(run.States(), Contains(UnorderedElementsAreArray(found.rows)));
                     EXPECT_THAT(found.lutm, AnyOf("2026-11-19", "2026-11-20 14:05:09"));
                     if (found.lutm != "2026-11-19") {
                       EXPECT_THAT(found.rows, UnorderedElementsAreArray(run.States().back()));
                     }
                     EXPECT_LE(run.pauses.Skipped(), seconds(4 * 150));
                     run.driver->FailAt(0);
                     run.rig.Sql("update tstables set in_use = 0");
                     EXPECT_EQ(run.Raised(), "nothing");
                     EXPECT_THAT(run.Found("nothing").rows, UnorderedElementsAreArray(run.States().back()));
                   });
}

// Within the transaction nothing is tried again, because the ERP would have to be asked again. Before and after it all
// is.
TEST_P(AskedAgainForLong, OnceACopyInWholeModeSavesAllOrNothing) {
  isWhole_ = true;
  std::int64_t complete = 0;
  const std::int64_t runs = AtEveryOperation(
      [](FaultyDriver& driver, std::int64_t at) { driver.FailAt(at); },
      [&](FaultyRun& run, const Outcome& found) {
        const bool isComplete = found.events.at(1).starts_with("event Complete");
        complete += isComplete ? 1 : 0;
        EXPECT_THAT(found.rows, UnorderedElementsAreArray(isComplete ? run.States().back() : run.States().front()));
        EXPECT_EQ(found.lutm, isComplete ? "2026-11-20 14:05:09" : "2026-11-19");
        EXPECT_EQ(found.inUse, "0");
        EXPECT_EQ(found.raised, "nothing");
      });
  EXPECT_GT(complete, 30);
  EXPECT_LT(complete, runs);
}

std::string NameOfInstance(const testing::TestParamInfo<AskedAgain::ParamType>& instance) {
  return std::string(std::get<0>(instance.param).code) +
         (std::get<1>(instance.param) == kFullCopy ? "_full" : "_changed");
}

std::vector<CopiedTable> Tables() {
  std::vector<CopiedTable> tables = TablesUnderFaults();
  if (std::getenv("QMX_TEST_EVERY_TABLE")) return tables;
  std::erase_if(tables, [](const CopiedTable& table) {
    return table.code != std::string_view("tsmdm030") && table.code != std::string_view("tsmdm140");
  });
  return tables;
}

INSTANTIATE_TEST_SUITE_P(OfATable, AskedAgainForLong,
                         testing::Combine(testing::Values(Tables()[0]), testing::Values(kFullCopy, kOnlyChanged)),
                         NameOfInstance);
INSTANTIATE_TEST_SUITE_P(OfEveryTable, AskedAgain,
                         testing::Combine(testing::ValuesIn(Tables()), testing::Values(kFullCopy, kOnlyChanged)),
                         NameOfInstance);

}  // namespace
}  // namespace qmx::test::asked_again
