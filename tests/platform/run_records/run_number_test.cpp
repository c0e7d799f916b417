#include "platform/run_records/run_number.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace qmx::test {
namespace {

using testing::MatchesRegex;

TEST(ARunNumber, IsARandomUuid) {
  std::set<std::string> numbers;
  for (int i = 0; i < 100; ++i) {
    const std::string number = NewRunNumber();
    EXPECT_THAT(number, MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}"));
    numbers.insert(number);
  }
  EXPECT_EQ(numbers.size(), 100U);
}

}  // namespace
}  // namespace qmx::test
