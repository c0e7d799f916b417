#include "platform/run_records/run_number.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace qmx::test {
namespace {

TEST(ARunNumber, IsARandomUuid) {
  const std::regex uuid("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
  std::set<std::string> numbers;
  for (int i = 0; i < 100; ++i) {
    const std::string number = NewRunNumber();
    EXPECT_TRUE(std::regex_match(number, uuid)) << number;
    numbers.insert(number);
  }
  EXPECT_EQ(numbers.size(), 100U);
}

}  // namespace
}  // namespace qmx::test
