// Injects every fault in turn: the database driver fails at its Nth operation, before or after executing it, and the
// ERP at its Nth call, for every N until the run passes. After each fault, checks the events, the flag, lutm, the local
// rows, the copy log, the raised error and the report against the expectation for the place of the fault.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/copy/faults/faulty_run.h"

namespace qmx::test::fault {
namespace {

using testing::AnyOf;
using testing::ElementsAreArray;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

// What the database holds may also be what `done` expects of it.
void Compare(const Outcome& found, const Outcome& expected, const Outcome& done) {
  EXPECT_THAT(found.events, ElementsAreArray(expected.events));
  EXPECT_THAT(found.inUse, AnyOf(expected.inUse, done.inUse));
  EXPECT_THAT(found.lutm, AnyOf(expected.lutm, done.lutm));
  EXPECT_THAT(found.rows, AnyOf(UnorderedElementsAreArray(expected.rows), UnorderedElementsAreArray(done.rows)));
  EXPECT_THAT(found.log, ElementsAreArray(expected.log));
  EXPECT_EQ(found.raised, expected.raised);
  EXPECT_THAT(found.reported, StartsWith(expected.reported));
}

void Compare(const Outcome& found, const Outcome& expected) { Compare(found, expected, expected); }

// The operation of that number as the logs and reports show its failure.
Fault FaultOf(const std::string& failed) {
  return {errors::kProviderUnspecified, "\"Faulty driver\",\"" + failed + '"',
          "error -2147467259, Faulty driver: " + failed};
}

class Faults : public testing::TestWithParam<std::tuple<CopiedTable, std::int16_t>> {};

TEST_P(Faults, OfTheDatabaseDriverAtEveryOperationKeepTheGuarantees) {
  const auto& [table, syncMethod] = GetParam();
  std::int64_t operation = 1;
  for (;; ++operation) {
    FaultyRun run(table, syncMethod);
    run.driver->FailAt(operation);
    const std::string raised = run.Raised();
    if (!run.driver->HasFailed()) break;
    SCOPED_TRACE(run.driver->FirstFailed() + "\n" + run.FirstFailure());
    Compare(run.Found(raised), run.Expected(FaultOf(run.driver->FirstFailed())));
    if (HasFailure()) return;
  }
  EXPECT_GT(operation, 50);
}

class LostAnswers : public Faults {};

TEST_P(LostAnswers, OfTheDatabaseDriverKeepTheGuarantees) {
  const auto& [table, syncMethod] = GetParam();
  std::int64_t operation = 1;
  for (;; ++operation) {
    FaultyRun run(table, syncMethod);
    run.driver->FailAs(FaultKind::After);
    run.driver->FailAt(operation);
    const std::string raised = run.Raised();
    if (!run.driver->HasFailed()) break;
    SCOPED_TRACE(run.driver->FirstFailed() + "\n" + run.FirstFailure());
    const Fault fault = FaultOf(run.driver->FirstFailed());
    Compare(run.Found(raised), run.Expected(fault), run.ExpectedIfDone(fault));
    if (HasFailure()) return;
  }
  EXPECT_GT(operation, 50);
}

TEST_P(Faults, OfTheErpAtEveryCallKeepTheGuarantees) {
  const auto& [table, syncMethod] = GetParam();
  std::int64_t call = 1;
  for (;; ++call) {
    FaultyRun run(table, syncMethod);
    run.rig.erp.calls.FailAt(call);
    const std::string raised = run.Raised();
    if (!run.rig.erp.calls.HasFailed()) break;
    const std::string failing = run.FirstFailure();
    const std::string text =
        "Call " + std::to_string(call) + " was made to fail: " + failing.substr(0, failing.find(" -> "));
    SCOPED_TRACE(text);
    Compare(run.Found(raised), run.Expected({7000, "\"Orvan\",\"" + text + '"', "error 7000, Orvan: " + text}));
    if (HasFailure()) return;
  }
  EXPECT_GT(call, 10);
}

std::string NameOfInstance(const testing::TestParamInfo<Faults::ParamType>& instance) {
  const auto& [table, syncMethod] = instance.param;
  return std::string(table.code) + (syncMethod == kFullCopy ? "_full" : "_changed");
}

INSTANTIATE_TEST_SUITE_P(OfEveryTable, Faults,
                         testing::Combine(testing::ValuesIn(TablesUnderFaults()),
                                          testing::Values(kFullCopy, kOnlyChanged)),
                         NameOfInstance);
// All tables share the steps that meet these.
INSTANTIATE_TEST_SUITE_P(OfATable, LostAnswers,
                         testing::Combine(testing::Values(TablesUnderFaults()[0]),
                                          testing::Values(kFullCopy, kOnlyChanged)),
                         NameOfInstance);

}  // namespace
}  // namespace qmx::test::fault
