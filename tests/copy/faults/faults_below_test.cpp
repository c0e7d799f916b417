// Faults of the database itself, below the batches and groups: one, or two, at every operation of a run.
//
// Which of the program's calls meets a fault there is a matter of time, and many are never seen above. Whatever is
// seen, the run's end, the flag, lutm, the rows and the report agree with each other, and the next run mends the table.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/copy/faults/faulty_run.h"

namespace qmx::test::faults_below {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

const char* const kOldLutm = "2026-11-19";
const char* const kNewLutm = "2026-11-20 14:05:09";

struct Faults {
  FaultKind kind;
  int distance;  // of a second one from the first; 0 for none
  bool whole = false;
  Place place = Place::BelowTheBatches;
};

class FaultsBelow : public testing::TestWithParam<std::tuple<CopiedTable, std::int16_t, Faults>> {
 protected:
  const CopiedTable& table_ = std::get<0>(GetParam());
  const bool full_ = std::get<1>(GetParam()) == kFullCopy;
  const bool whole_ = std::get<2>(GetParam()).whole;
  const FailureTexts& texts_ = full_ ? table_.fullFailure : table_.changedFailure;

  void ExpectAgreement(FaultyRun& run, const Outcome& found) {
    const std::vector<std::string> all = run.States().back();
    EXPECT_THAT(run.States(), Contains(UnorderedElementsAreArray(found.rows)));
    if (whole_) {
      EXPECT_THAT(found.rows, UnorderedElementsAreArray(found.lutm == kNewLutm ? all : run.States().front()));
    }
    const bool isComplete = found.events.size() > 1 && found.events[1].starts_with("event Complete");
    const bool isReleased =
        found.reported.find("ReleaseCopyInProgress") == std::string::npos && found.raised == "nothing";
    if (isReleased) {
      EXPECT_EQ(found.inUse, "0");
    }
    EXPECT_THAT(found.lutm, AnyOf(kOldLutm, kNewLutm));
    if (found.lutm == kNewLutm) {
      EXPECT_THAT(found.rows, UnorderedElementsAreArray(all)) << "lutm is ahead of the rows";
    }

    if (isComplete) {
      EXPECT_THAT(found.rows, UnorderedElementsAreArray(all)) << "a run that is complete has lost rows";
      EXPECT_THAT(found.events[1], EndsWith(full_ ? ", 2, 0, 0" : ", 1, 1, 1"));
      EXPECT_EQ(found.raised, "nothing");
      // An lutm that could not be written is in the log.
      if (found.lutm == kOldLutm) {
        EXPECT_FALSE(whole_);
        EXPECT_THAT(found.log, Contains(HasSubstr("Faulty driver")));
      }
      return;
    }
    EXPECT_THAT(found.log, testing::Not(IsEmpty()));
    EXPECT_THAT(found.raised, AnyOf("nothing", EndsWith(", ReleaseCopyInProgress")));
    if (found.raised != "nothing") return;
    EXPECT_THAT(found.events.at(found.events.size() - 2), StartsWith("event Error"));
    EXPECT_THAT(found.reported, HasSubstr("Faulty driver: Operation"));
    if (!found.events[0].starts_with("event Started")) return;
    const std::string named = std::string(", ") + texts_.source + ": " + texts_.description;
    EXPECT_THAT(found.reported,
                AnyOf(StartsWith("error -2147467159" + named), StartsWith("error -2147467059" + named)));
    EXPECT_THAT(found.log, Contains(Quoted(texts_.source) + ',' + Quoted(texts_.description)));
  }

  void ExpectTheNextRunToMendIt(FaultyRun& run) {
    run.driver->FailAt(0);
    run.rig.Sql("update tstables set in_use = 0");
    run.rig.calls.Clear();
    run.rig.failures.chains.clear();
    EXPECT_EQ(run.Raised(), "nothing");
    const Outcome found = run.Found("nothing");
    EXPECT_THAT(found.events.at(1), StartsWith("event Complete"));
    EXPECT_THAT(found.rows, UnorderedElementsAreArray(run.States().back()));
    EXPECT_EQ(found.lutm, kNewLutm);
    EXPECT_EQ(found.inUse, "0");
  }
};

TEST_P(FaultsBelow, LeaveAConsistentOutcomeFlagTimeAndRows) {
  const auto& [table, syncMethod, faults] = GetParam();
  std::int64_t operation = 1;
  for (;; ++operation) {
    FaultyRun run(table, syncMethod, faults.place);
    run.rig.declarations.copiesWhole = faults.whole;
    run.driver->FailAs(faults.kind);
    if (faults.kind == FaultKind::TakenBack) run.driver->FailOnly("Commit");
    run.driver->FailAt({operation, operation + faults.distance});
    const std::string raised = run.Raised();
    if (!run.driver->HasFailed()) break;
    SCOPED_TRACE(run.driver->FirstFailed());
    const Outcome found = run.Found(raised);
    ExpectAgreement(run, found);
    ExpectTheNextRunToMendIt(run);
    if (HasFailure()) return;
  }
  EXPECT_GT(operation, faults.kind == FaultKind::TakenBack ? 1 : 30);
}

CopiedTable TableOf(std::string_view code) {
  const auto isIt = [&](const CopiedTable& table) { return table.code == code; };
  return *std::ranges::find_if(TablesUnderFaults(), isIt);
}

std::string NameOfInstance(const testing::TestParamInfo<FaultsBelow::ParamType>& instance) {
  const auto& [table, syncMethod, faults] = instance.param;
  return std::string(table.code) + (syncMethod == kFullCopy ? "_full_" : "_changed_") + NameOf(faults.kind) +
         (faults.distance > 0 ? std::to_string(faults.distance) : "") +
         (faults.place == Place::AboveTheBatches ? "_above" : "") + (faults.whole ? "_whole" : "");
}

INSTANTIATE_TEST_SUITE_P(OfATable, FaultsBelow,
                         testing::Combine(testing::Values(TableOf("tsmdm030")),
                                          testing::Values(kFullCopy, kOnlyChanged),
                                          testing::Values(Faults{FaultKind::Before, 0}, Faults{FaultKind::After, 0},
                                                          Faults{FaultKind::TakenBack, 0}, Faults{FaultKind::Before, 1},
                                                          Faults{FaultKind::Before, 4}, Faults{FaultKind::After, 3})),
                         NameOfInstance);
INSTANTIATE_TEST_SUITE_P(
    InWholeMode, FaultsBelow,
    testing::Combine(testing::Values(TableOf("tsmdm030")), testing::Values(kFullCopy, kOnlyChanged),
                     testing::Values(Faults{FaultKind::Before, 0, true}, Faults{FaultKind::After, 0, true},
                                     Faults{FaultKind::TakenBack, 0, true}, Faults{FaultKind::Before, 1, true},
                                     Faults{FaultKind::Before, 4, true}, Faults{FaultKind::After, 3, true},
                                     Faults{FaultKind::Before, 0, true, Place::AboveTheBatches},
                                     Faults{FaultKind::After, 0, true, Place::AboveTheBatches})),
    NameOfInstance);
INSTANTIATE_TEST_SUITE_P(OfATableThatIsReadAgain, FaultsBelow,
                         testing::Combine(testing::Values(TableOf("tsmdm140")), testing::Values(kOnlyChanged),
                                          testing::Values(Faults{FaultKind::Before, 0}, Faults{FaultKind::After, 0})),
                         NameOfInstance);

}  // namespace
}  // namespace qmx::test::faults_below
