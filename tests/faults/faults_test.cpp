// A few faults of each kind, the same ones each time. ./faults.sh tries many.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/faults/fault_driver.h"
#include "tests/support/missing.h"
#include "tests/support/systems_under_test.h"

namespace qmx::test::faults {
namespace {

using testing::IsEmpty;

constexpr int kEach = 1;

class FaultsBeneathTheProgram : public testing::TestWithParam<DriverUnderTest> {};
INSTANTIATE_TEST_SUITE_P(Over, FaultsBeneathTheProgram, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(FaultsBeneathTheProgram, OfEachKindKeepTheGuarantees) {
  if (!std::filesystem::exists(QMXDATACOPY)) return Missing("There is no release build, beneath which calls can fail.");
  FaultDriver driver(GetParam().name);
  int kinds = 0, struck = 0;
  for (const FaultKind& kind : FaultKinds()) {
    if (!driver.Has(kind) || kind.isSlow || kind.action == "killed") continue;  // the server may be others', too
    const CopyKind& copy = CopyKinds()[static_cast<std::size_t>(kinds++) % CopyKinds().size()];
    const Outcomes outcomes = driver.Try(kind, copy, kEach);
    EXPECT_THAT(outcomes.findings, IsEmpty());
    struck += outcomes.struck;
  }
  EXPECT_GT(struck, kinds / 2);  // how often a program receives differs a little
}

}  // namespace
}  // namespace qmx::test::faults
