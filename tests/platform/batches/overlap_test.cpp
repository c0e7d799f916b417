// The program adds rows while the session's helper thread sends full batches.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/batches/driver.h"
#include "platform/sqlite/driver.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/fake_steady_clock.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

constexpr int kBatch = 128;  // rows of two columns that go out together

// A database whose batches are held up on their way to it until `mayPass` holds.
class OverlappingBatches : public testing::Test {
 protected:
  OverlappingBatches() {
    connection_.Open("Provider=SQLite;Mode=Create;Data Source=" + folder_ / "local.db", "", "");
    connection_.Execute("create table people (code integer not null primary key, floor smallint)");
    records_.Open("people", connection_, kCursorKeyset, kLockOptimistic, kCommandTable);
  }

  // The helper thread alone is held up; what the program's thread does itself is not.
  void HoldUpUntil(std::function<bool()> mayPass) {
    below_.before = [this, mayPass, program = std::this_thread::get_id()](const std::string& operation) {
      if (operation != "Add" || std::this_thread::get_id() == program) return;
      Set(isOnItsWay_, 1);
      if (!Await(mayPass)) wasHeldUpForever_ = true;
    };
  }

  void Set(std::atomic<int>& value, int to) {
    const std::lock_guard guard(mutex_);
    value = to;
    changed_.notify_all();
  }

  bool Await(const std::function<bool()>& condition) {
    std::unique_lock guard(mutex_);
    return changed_.wait_for(guard, std::chrono::seconds(60), condition);
  }

  void AddRows(int from, int to) {
    for (int code = from; code < to; ++code) {
      records_.AddNew();
      Set(added_, code);  // so many rows are behind it
      records_.Fields("code") = code;
      records_.Fields("floor") = 1;
    }
  }

  std::string Rows() {
    Connection other({&sqlite_}, nullptr);
    other.Open("Provider=SQLite;Data Source=" + folder_ / "local.db", "", "");
    Recordset records(nullptr);
    records.Open("select count(*), max(code) from people", other, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.Fields(std::size_t{0}).Value().ToText() + " to " + records.Fields(1).Value().ToText();
  }

  TempFolder folder_;
  SqliteDriver sqlite_;
  FaultyDriver below_{sqlite_};
  FakeSteadyClock clock_;
  BatchingDriver batching_{below_, clock_};
  Connection connection_{{&batching_}, nullptr};
  Recordset records_{nullptr};
  std::mutex mutex_;
  std::condition_variable changed_;
  std::atomic<int> added_ = 0;
  std::atomic<int> isOnItsWay_ = 0;
  std::atomic<bool> wasHeldUpForever_ = false;
};

TEST_F(OverlappingBatches, AreFilledWhileOneIsSent) {
  HoldUpUntil([this] { return added_ >= 2 * kBatch; });
  AddRows(0, kBatch + 2);
  EXPECT_TRUE(Await([this] { return isOnItsWay_ == 1; }));
  AddRows(kBatch + 2, 3 * kBatch);
  records_.Close();
  EXPECT_FALSE(wasHeldUpForever_);
  EXPECT_EQ(Rows(), "384 to 383");
}

TEST_F(OverlappingBatches, MakeTheProgramWaitWhenAllAreFull) {
  std::atomic<int> mayPass = 0;
  std::thread program([&] {
    HoldUpUntil([&] { return mayPass == 1; });
    AddRows(0, 10 * kBatch);
    records_.Close();
  });
  constexpr int kMost = 1 + 2 * kBatch + 1;  // the first row goes out alone, the last one is not saved yet
  EXPECT_TRUE(Await([&] { return added_ + 1 == kMost; })) << added_;
  clock_.AwaitWaitingThread();  // the program's: the helper waits in the driver
  EXPECT_EQ(added_ + 1, kMost);
  Set(mayPass, 1);
  program.join();
  EXPECT_FALSE(wasHeldUpForever_);
  EXPECT_EQ(Rows(), "1280 to 1279");
}

TEST_F(OverlappingBatches, AfterABadRowAreNotSent) {
  connection_.Execute("insert into people (code) values (100)");
  HoldUpUntil([this] { return added_ >= kBatch + 10; });
  const Error error = Raised([&] {
    AddRows(0, 10 * kBatch);
    records_.Update();
  });
  EXPECT_EQ(error.Number(), -2147217873);
  EXPECT_THAT(DescribeChain(error), testing::HasSubstr("code=100"));
  EXPECT_FALSE(wasHeldUpForever_);
  records_.CancelUpdate();
  records_.Close();
  EXPECT_EQ(Rows(), "101 to 100");
}

TEST_F(OverlappingBatches, AreAllThereBeforeAnythingElseIsDone) {
  HoldUpUntil([this] { return added_ >= kBatch + 10; });
  AddRows(0, kBatch + 11);
  EXPECT_EQ(connection_.Execute("update people set floor = 2"), kBatch + 10);
  EXPECT_FALSE(wasHeldUpForever_);
}

// In every batch another row has a long text.
TEST_F(OverlappingBatches, DoNotKeepTheRoomOfLongTexts) {
  constexpr std::size_t kMebibyte = 1 << 20;
  constexpr int kBatches = 36;
  connection_.Execute("create table notes (code integer not null primary key, note text)");
  std::size_t most = 0;
  std::size_t together = 0;
  below_.beforeAdd = [&](std::span<const Variant> values) {
    std::size_t room = 0;
    for (const Variant& value : values) room += value.IfText() ? value.IfText()->capacity() : 0;
    most = std::max(most, room);
    ++together;
  };
  records_.Close();
  records_.Open("notes", connection_, kCursorKeyset, kLockOptimistic, kCommandTable);
  for (int row = 0; row < kBatches * kBatch; ++row) {
    records_.AddNew();
    records_.Fields("code") = row;
    records_.Fields("note") = std::string(row % kBatch == row / kBatch ? kMebibyte / 2 : 1, 'x');
  }
  records_.Close();
  EXPECT_GE(together, kBatches);
  EXPECT_LE(most, 3 * kMebibyte);
}

}  // namespace
}  // namespace qmx::test
