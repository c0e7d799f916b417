// When a helper thread works, by a clock that the test sets.
#include "platform/batches/helper_thread.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;

class AHelperThread : public testing::Test {
 protected:
  // Works at each due moment, and counts its work.
  std::optional<SteadyClock::TimePoint> Work() {
    threads_.insert(std::this_thread::get_id());
    if (due_ && clock_.Now() >= *due_) {
      ++worked_;
      hasWorked_.notify_all();
      due_.reset();
    }
    return due_;
  }

  void WakeWithWorkIn(milliseconds time) {
    const SteadyClock::Lock lock(mutex_);
    due_ = clock_.Now() + time;
    helper_.Wake();
  }

  int Worked() {
    const SteadyClock::Lock lock(mutex_);
    return worked_;
  }

  bool AwaitWork(int times) {
    SteadyClock::Lock lock(mutex_);
    return hasWorked_.wait_for(lock, std::chrono::seconds(60), [&] { return worked_ == times; });
  }

  FakeSteadyClock clock_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::condition_variable hasWorked_;
  std::optional<SteadyClock::TimePoint> due_;
  int worked_ = 0;
  std::set<std::thread::id> threads_;
  HelperThread helper_{clock_, mutex_, changed_, [this](SteadyClock::Lock&) { return Work(); }};
};

TEST_F(AHelperThread, DoesNotStartBeforeItIsWoken) {
  helper_.Stop();
  EXPECT_TRUE(threads_.empty());
}

TEST_F(AHelperThread, WorksWhenItsWorkIsDueAndNotBefore) {
  WakeWithWorkIn(milliseconds(50));
  clock_.PassWhileAThreadWaits(milliseconds(49));
  EXPECT_EQ(Worked(), 0);
  clock_.PassWhileAThreadWaits(milliseconds(1));
  EXPECT_EQ(Worked(), 1);
}

TEST_F(AHelperThread, SleepsWithoutWorkUntilItIsWoken) {
  WakeWithWorkIn(milliseconds(10));
  clock_.PassWhileAThreadWaits(milliseconds(10));
  clock_.PassWhileAThreadWaits(milliseconds(1000));
  EXPECT_EQ(Worked(), 1);
  WakeWithWorkIn(milliseconds(10));
  clock_.PassWhileAThreadWaits(milliseconds(10));
  EXPECT_EQ(Worked(), 2);
}

TEST_F(AHelperThread, IsWokenForWorkThatIsDueAtOnce) {
  WakeWithWorkIn(milliseconds(10));
  clock_.PassWhileAThreadWaits(milliseconds(10));
  WakeWithWorkIn(milliseconds(0));
  EXPECT_TRUE(AwaitWork(2));
}

TEST_F(AHelperThread, IsOneThreadOtherThanItsOwners) {
  for (int round = 0; round < 3; ++round) {
    WakeWithWorkIn(milliseconds(10));
    clock_.PassWhileAThreadWaits(milliseconds(10));
  }
  helper_.Stop();
  EXPECT_EQ(threads_.size(), 1);
  EXPECT_FALSE(threads_.contains(std::this_thread::get_id()));
}

TEST_F(AHelperThread, StopsWhileItsWorkIsNotDue) {
  WakeWithWorkIn(milliseconds(50));
  clock_.AwaitWaitingThread();
  helper_.Stop();
  EXPECT_EQ(worked_, 0);
}

TEST_F(AHelperThread, DoesNothingMoreOnceItIsStopped) {
  WakeWithWorkIn(milliseconds(50));
  clock_.AwaitWaitingThread();
  helper_.Stop();
  WakeWithWorkIn(milliseconds(0));
  helper_.Stop();
  EXPECT_EQ(worked_, 0);
}

}  // namespace
}  // namespace qmx::test
