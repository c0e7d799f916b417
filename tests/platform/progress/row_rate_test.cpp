#include "platform/progress/row_rate.h"

#include <gtest/gtest.h>

namespace qmx {
namespace {

using std::chrono::milliseconds;

class RowRateOver : public testing::Test {
 protected:
  std::int64_t At(int milliSeconds, std::int64_t rows) { return rate.At(start + milliseconds(milliSeconds), rows); }

  RowRate rate;
  RowRate::Moment start{};
};

TEST_F(RowRateOver, WithoutRowsIsZero) { EXPECT_EQ(At(0, 500), 0); }

TEST_F(RowRateOver, OfASteadyCopyIsItsSpeed) {
  for (int time = 0; time <= 20000; time += 100) {
    const std::int64_t shown = At(time, time * 5);
    if (time > 0) {
      EXPECT_EQ(shown, 5000) << time;
    }
  }
}

TEST_F(RowRateOver, FallsToZeroWithinSecondsOfTheLastRow) {
  At(0, 0);
  EXPECT_EQ(At(1000, 6000), 6000);
  EXPECT_EQ(At(2000, 6000), 3000);
  EXPECT_EQ(At(3000, 6000), 2000);
  EXPECT_EQ(At(4000, 6000), 0);
}

TEST_F(RowRateOver, CountsAllRowsBetweenRareReadings) {
  At(0, 0);
  EXPECT_EQ(At(10000, 100), 10);
  EXPECT_EQ(At(20000, 300), 20);
}

}  // namespace
}  // namespace qmx
