#include "platform/system/random_bytes.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace qmx::test {
namespace {

TEST(RandomBytes, AreOthersEveryTime) {
  std::set<std::array<unsigned char, 8>> seen;
  for (int i = 0; i < 100; ++i) {
    std::array<unsigned char, 8> bytes{};
    EXPECT_TRUE(FillWithRandomBytes(bytes));
    seen.insert(bytes);
  }
  EXPECT_EQ(seen.size(), 100U);
}

}  // namespace
}  // namespace qmx::test
