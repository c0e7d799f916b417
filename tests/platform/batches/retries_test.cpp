// When work is tried again, after which pauses, and until when.
#include "platform/batches/retries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_steady_clock.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class SomeRetries : public testing::Test {
 protected:
  // Asks to be tried again so many times.
  auto Refusing(int times) {
    return [this, times] {
      if (attempts_++ < times) {
        throw Error(errors::kProviderUnspecified, "ODBC", "Deadlock found.").With("SQLSTATE", "40001");
      }
      return attempts_;
    };
  }

  FakeSteadyClock clock_;
  RetryCount total_ = 0;
  Retries retries_{clock_, &total_};
  int attempts_ = 0;
};

TEST_F(SomeRetries, GiveTheResultOfTheFirstAttemptThatSucceeds) {
  EXPECT_EQ(retries_.Run(Refusing(3)), 4);
  EXPECT_EQ(retries_.Count(), 3);
  EXPECT_EQ(total_, 3);
}

TEST_F(SomeRetries, CostNoPauseWhereNothingFails) {
  EXPECT_EQ(retries_.Run(Refusing(0)), 1);
  EXPECT_EQ(retries_.Count(), 0);
  EXPECT_TRUE(clock_.sleeps.empty());
}

TEST_F(SomeRetries, PauseForTenMillisecondsFirstAndTwiceAsLongEachTimeUpToFiveHundredLessAtMostAHalf) {
  retries_.Run(Refusing(8));
  ASSERT_EQ(clock_.sleeps.size(), 8u);
  const int longest[] = {10, 20, 40, 80, 160, 320, 500, 500};
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_LE(clock_.sleeps[i], milliseconds(longest[i]));
    EXPECT_GE(clock_.sleeps[i], milliseconds(longest[i]) / 2);
  }
}

TEST_F(SomeRetries, DoNotPauseEquallyLongInTwoPrograms) {
  retries_.Run(Refusing(8));
  const std::vector<std::chrono::microseconds> sleeps = std::move(clock_.sleeps);
  clock_.sleeps.clear();
  attempts_ = 0;
  Retries others(clock_);
  others.Run(Refusing(8));
  EXPECT_NE(clock_.sleeps, sleeps);
}

TEST_F(SomeRetries, EndWithTheTimeOutAndSayHowOftenTheyTried) {
  retries_.Limit(seconds(5));
  const auto begin = clock_.Now();
  const Error error = Raised([&] { retries_.Run(Refusing(1000)); });
  EXPECT_EQ(error.Number(), -2147217871);
  EXPECT_EQ(error.Description(),
            "Deadlock found. It was tried again " + std::to_string(retries_.Count()) + " times within 5 seconds.");
  ASSERT_NE(error.Cause(), nullptr);
  EXPECT_EQ(error.Cause()->DetailOf("SQLSTATE"), "40001");
  EXPECT_LT(clock_.Now() - begin, seconds(5));
  EXPECT_GT(clock_.Now() - begin, milliseconds(4400));
  EXPECT_FALSE(AsksToTryAgain(error));
}

TEST_F(SomeRetries, CountTheTimeOfTheAttemptsToo) {
  const auto takingTwelveSeconds = [&]() -> int {
    clock_.Pass(seconds(12));
    return Refusing(1000)();
  };
  Raised([&] { retries_.Run(takingTwelveSeconds); });
  EXPECT_EQ(attempts_, 3);  // the third one begins after 24 seconds, the next would after 36
}

TEST_F(SomeRetries, HaveNoEndWithoutATimeOut) {
  retries_.Limit(seconds(0));
  EXPECT_EQ(retries_.Run(Refusing(5000)), 5001);
}

TEST_F(SomeRetries, WithinOthersEndOnce) {
  const Error error = Raised([&] { retries_.Run([&] { retries_.Run(Refusing(100000)); }); });
  EXPECT_EQ(error.Number(), -2147217871);
  EXPECT_LT(retries_.Count(), 200);
}

TEST_F(SomeRetries, LeaveEveryOtherErrorAlone) {
  const auto refused = [&] {
    ++attempts_;
    throw Error(errors::kIntegrity, "ODBC", "It is there already.").With("SQLSTATE", "23505");
  };
  EXPECT_EQ(Raised([&] { retries_.Run(refused); }).Description(), "It is there already.");
  EXPECT_EQ(attempts_, 1);
}

}  // namespace
}  // namespace qmx::test
