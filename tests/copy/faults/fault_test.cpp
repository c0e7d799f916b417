// Every fault in its turn: the database driver fails at its Nth operation, the ERP at its Nth call, for every N until
// the run passes. After each the events, the flag, lutm, the local rows, the copy log, the raised error and the report
// are what they must be for the place where the fault hit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/copy/faults/faulty_run.h"

namespace qmx::test {
namespace {

using testing::ElementsAreArray;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

void Compare(const Outcome& found, const Outcome& expected) {
  EXPECT_THAT(found.events, ElementsAreArray(expected.events));
  EXPECT_EQ(found.inUse, expected.inUse);
  EXPECT_EQ(found.lutm, expected.lutm);
  EXPECT_THAT(found.rows, UnorderedElementsAreArray(expected.rows));
  EXPECT_THAT(found.log, ElementsAreArray(expected.log));
  EXPECT_EQ(found.raised, expected.raised);
  EXPECT_THAT(found.reported, StartsWith(expected.reported));
}

class Faults : public testing::TestWithParam<std::tuple<CopiedTable, std::int16_t>> {};

TEST_P(Faults, OfTheDatabaseDriverAtEveryOperationLeaveWhatTheyMust) {
  const auto& [table, syncMethod] = GetParam();
  std::int64_t operation = 1;
  for (;; ++operation) {
    FaultyRun run(table, syncMethod);
    run.driver->FailAt(operation);
    const std::string raised = run.Raised();
    if (!run.driver->HasFailed()) break;
    const std::string what = run.driver->Record()[static_cast<std::size_t>(operation) - 1];
    const std::string text = "Operation " + std::to_string(operation) + " was made to fail: " + what;
    SCOPED_TRACE(text + "\n" + run.FirstFailure());
    Compare(run.Found(raised), run.Expected({errors::kProviderUnspecified, "\"Faulty driver\",\"" + text + '"',
                                             "error -2147467259, Faulty driver: " + text}));
    if (HasFailure()) return;
  }
  EXPECT_GT(operation, 50);
}

TEST_P(Faults, OfTheErpAtEveryCallLeaveWhatTheyMust) {
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

INSTANTIATE_TEST_SUITE_P(OfEveryTable, Faults,
                         testing::Combine(testing::ValuesIn(TablesUnderFaults()),
                                          testing::Values(kFullCopy, kOnlyChanged)),
                         [](const auto& instance) {
                           return std::string(std::get<0>(instance.param).code) +
                                  (std::get<1>(instance.param) == kFullCopy ? "_full" : "_changed");
                         });

}  // namespace
}  // namespace qmx::test
