// Which rows wait for each other, when a batch ends, and in which order batches leave the queue.
#include "platform/batches/row_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class FakeSink : public RowSink {
 public:
  explicit FakeSink(std::size_t most) : most_(most) {}
  std::size_t MostRows() const override { return most_; }
  void Send(std::span<const Variant>) override {}
  void AskMostRows() override {}

 private:
  std::size_t most_;
};

class ARowQueue : public testing::Test {
 protected:
  bool Add(RowSink& sink, const Variant& value) {
    const Variant* const row[] = {&value};
    queue_.FollowsQuickly();
    return queue_.Add(sink, row);
  }

  std::vector<Variant> Oldest() {
    const std::span<const Variant> values = queue_.Oldest().Values();
    return {values.begin(), values.end()};
  }

  FakeSteadyClock clock_;
  RowQueue queue_{clock_};
  FakeSink sink_{3};
  FakeSink another_{3};
};

TEST_F(ARowQueue, IsEmptyAtFirst) {
  EXPECT_TRUE(queue_.IsEmpty());
  EXPECT_FALSE(queue_.IsFull());
  EXPECT_FALSE(queue_.IsFilling());
  EXPECT_FALSE(queue_.HasEnded());
  EXPECT_FALSE(queue_.HasRowsOf(sink_));
}

TEST_F(ARowQueue, DistinguishesRowsInQuickSuccessionFromTheFirstOneAfterAPause) {
  EXPECT_FALSE(queue_.FollowsQuickly());
  EXPECT_TRUE(queue_.FollowsQuickly());
  clock_.Pass(milliseconds(49));
  EXPECT_TRUE(queue_.FollowsQuickly());
  clock_.Pass(milliseconds(50));
  EXPECT_FALSE(queue_.FollowsQuickly());
}

TEST_F(ARowQueue, EndsABatchWithTheMostRowsOfItsStatement) {
  EXPECT_FALSE(Add(sink_, 1));
  EXPECT_FALSE(Add(sink_, 2));
  EXPECT_FALSE(queue_.HasEnded());
  EXPECT_TRUE(Add(sink_, 3));
  EXPECT_TRUE(queue_.HasEnded());
  EXPECT_FALSE(queue_.IsFilling());
  EXPECT_THAT(Oldest(), ElementsAre(Variant(1), Variant(2), Variant(3)));
}

TEST_F(ARowQueue, EndsABatchWhoseTextsReachOneMebibyte) {
  EXPECT_FALSE(Add(sink_, std::string((1 << 20) - 1, 'x')));
  EXPECT_TRUE(Add(sink_, std::string(1, 'x')));
}

TEST_F(ARowQueue, CountsTheTextsOfEachBatchByThemselves) {
  EXPECT_TRUE(Add(sink_, std::string(1 << 20, 'x')));
  queue_.RemoveOldest();
  EXPECT_TRUE(Add(sink_, std::string(1 << 20, 'x')));
  queue_.RemoveOldest();
  EXPECT_FALSE(Add(sink_, "short"));
}

TEST_F(ARowQueue, IsFullWhenTwoBatchesHaveEnded) {
  for (int row = 0; row < 3; ++row) Add(sink_, row);
  EXPECT_FALSE(queue_.IsFull());
  for (int row = 3; row < 6; ++row) Add(sink_, row);
  EXPECT_TRUE(queue_.IsFull());
  EXPECT_FALSE(queue_.IsFilling());
  queue_.RemoveOldest();
  EXPECT_FALSE(queue_.IsFull());
}

TEST_F(ARowQueue, GivesItsBatchesInTheOrderOfTheirRows) {
  std::vector<Variant> sent;
  for (int row = 0; row < 6; ++row) Add(sink_, row);
  for (int row = 6; row < 9; ++row) {
    for (const Variant& value : Oldest()) sent.push_back(value);
    queue_.RemoveOldest();
    for (int more = 0; more < 3; ++more) Add(sink_, 3 * row - 12 + more);
  }
  EXPECT_THAT(sent, ElementsAre(Variant(0), Variant(1), Variant(2), Variant(3), Variant(4), Variant(5), Variant(6),
                                Variant(7), Variant(8)));
}

TEST_F(ARowQueue, TakesRowsWhileItsOldestBatchIsSent) {
  for (int row = 0; row < 3; ++row) Add(sink_, row);
  const std::span<const Variant> beingSent = queue_.Oldest().Values();
  Add(sink_, 3);
  EXPECT_THAT(beingSent, ElementsAre(Variant(0), Variant(1), Variant(2)));
  EXPECT_TRUE(queue_.IsFilling());
}

TEST_F(ARowQueue, EndsABatchEarlyWhenTold) {
  queue_.EndBatch();
  EXPECT_FALSE(queue_.HasEnded());
  Add(sink_, 1);
  queue_.EndBatch();
  EXPECT_TRUE(queue_.HasEnded());
  EXPECT_THAT(Oldest(), ElementsAre(Variant(1)));
}

TEST_F(ARowQueue, HasABatchDue50MillisecondsAfterItsFirstRow) {
  Add(sink_, 1);
  const SteadyClock::TimePoint due = clock_.Now() + milliseconds(50);
  clock_.Pass(milliseconds(30));
  Add(sink_, 2);
  EXPECT_EQ(queue_.Due(), due);
  queue_.EndBatch();
  Add(sink_, 3);
  EXPECT_EQ(queue_.Due(), due + milliseconds(30));
}

TEST_F(ARowQueue, KnowsTheStatementOfTheBatchThatIsFilled) {
  EXPECT_FALSE(queue_.IsFillingForAnother(sink_));
  Add(sink_, 1);
  EXPECT_FALSE(queue_.IsFillingForAnother(sink_));
  EXPECT_TRUE(queue_.IsFillingForAnother(another_));
}

TEST_F(ARowQueue, KnowsWhoseRowsItHas) {
  Add(sink_, 1);
  queue_.EndBatch();
  Add(another_, 2);
  EXPECT_TRUE(queue_.HasRowsOf(sink_));
  EXPECT_TRUE(queue_.HasRowsOf(another_));
  queue_.RemoveOldest();
  EXPECT_FALSE(queue_.HasRowsOf(sink_));
  EXPECT_TRUE(queue_.HasRowsOf(another_));
}

TEST_F(ARowQueue, DropsAllItsRowsWhenCleared) {
  for (int row = 0; row < 5; ++row) Add(sink_, row);
  queue_.Clear();
  EXPECT_TRUE(queue_.IsEmpty());
  EXPECT_FALSE(queue_.HasRowsOf(sink_));
  Add(another_, 7);
  queue_.EndBatch();
  EXPECT_THAT(Oldest(), ElementsAre(Variant(7)));
}

TEST_F(ARowQueue, KeepsTheMemoryOfShortTextsAndFreesThatOfLongOnes) {
  Add(sink_, std::string(1000, 'x'));
  queue_.EndBatch();
  queue_.Oldest().ForgetLongTexts();
  EXPECT_EQ(queue_.Oldest().values.size(), 1);
  queue_.RemoveOldest();
  Add(sink_, std::string((2 << 20) + 1, 'x'));
  queue_.Oldest().ForgetLongTexts();
  EXPECT_EQ(queue_.Oldest().values.size(), 0);
}

}  // namespace
}  // namespace qmx::test
