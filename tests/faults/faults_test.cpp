// A few faults of each kind, the same ones each time. ./faults.sh tries many.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/faults/fault_driver.h"
#include "tests/support/missing.h"

namespace qmx::test::faults {
namespace {

using testing::IsEmpty;

constexpr int kEach = 2;

TEST(FaultsBeneathTheProgram, OfEachKindKeepTheGuaranteesOverAFile) {
  if (!std::filesystem::exists(QMXDATACOPY)) return Missing("There is no release build, beneath which calls can fail.");
  FaultDriver driver;
  int kinds = 0;
  for (const FaultKind& kind : FaultKinds()) {
    const CopyKind& copy = CopyKinds()[static_cast<std::size_t>(kinds++) % CopyKinds().size()];
    const Outcomes outcomes = driver.Try(kind, copy, kEach);
    EXPECT_THAT(outcomes.findings, IsEmpty());
    EXPECT_GT(outcomes.struck, 0) << kind.name << ", " << copy.name;
  }
}

}  // namespace
}  // namespace qmx::test::faults
