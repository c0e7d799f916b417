#include "platform/system/end_at_once.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "platform/system/exit_guard.h"

namespace qmx::test {
namespace {

TEST(AProcessThatEndsAtOnce, HasTheStatusAndCallsNoHandler) {
  const auto end = [] {
    GuardExit();
    std::atexit([] { std::fputs("a handler\n", stderr); });
    EndAtOnce(5);
  };
  EXPECT_EXIT(end(), testing::ExitedWithCode(5), "^$");
}

}  // namespace
}  // namespace qmx::test
