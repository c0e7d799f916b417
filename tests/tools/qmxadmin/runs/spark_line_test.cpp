#include "tools/qmxadmin/runs/spark_line.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

TEST(ASparkLine, HasABarForEachNumberInProportionToTheLargest) {
  EXPECT_EQ(SparkLine({0, 1, 2, 3, 4, 5, 6, 7}), "▁▂▃▄▅▆▇█");
  EXPECT_EQ(SparkLine({100, 50, 1}), "█▅▁");
}

TEST(ASparkLine, IsEmptyWithoutNumbersAndLowForZeros) {
  EXPECT_EQ(SparkLine({}), "");
  EXPECT_EQ(SparkLine({0, 0}), "▁▁");
}

}  // namespace
}  // namespace qmx::test
