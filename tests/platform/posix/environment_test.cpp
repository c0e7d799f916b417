#include "platform/system/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace qmx {
namespace {

TEST(AnEnvironmentVariable, IsNoneOrEmptyOrWhatWasSet) {
  unsetenv("QMX_TEST_VARIABLE");
  EXPECT_EQ(EnvironmentVariable("QMX_TEST_VARIABLE"), std::nullopt);
  SetVariable("QMX_TEST_VARIABLE", "");
  EXPECT_EQ(EnvironmentVariable("QMX_TEST_VARIABLE"), "");
  SetVariable("QMX_TEST_VARIABLE", "Zürich=8");
  EXPECT_EQ(EnvironmentVariable("QMX_TEST_VARIABLE"), "Zürich=8");
  EXPECT_STREQ(std::getenv("QMX_TEST_VARIABLE"), "Zürich=8");
  unsetenv("QMX_TEST_VARIABLE");
}

}  // namespace
}  // namespace qmx
