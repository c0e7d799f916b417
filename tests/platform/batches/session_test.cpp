// A session by itself: what it does with waiting rows and an open group before anything else, and whom it tells of a
// refused row. The first of several rows goes alone; the others wait.
#include "platform/batches/session.h"

#include <gmock/gmock.h>

#include <latch>

#include "tests/platform/batches/batching_session.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

class TheSession : public BatchingSession {
 protected:
  // Those of the recorded operations that are named, in their order.
  std::vector<std::string> Recorded(const std::set<std::string>& names) const {
    std::vector<std::string> found;
    for (const std::string& operation : below_.Record()) {
      const std::string name = operation.substr(0, operation.find(' '));
      if (names.contains(name)) found.push_back(name);
    }
    return found;
  }

  // In a group, which it opens.
  void Write(const std::string& statement) { Execution(*session_->Prepare(statement)).Run(); }
};

TEST_F(TheSession, IsRolledBackWithItsWaitingRowsWhoseFailureNobodyNeeds) {
  session_->Begin();
  const auto insert = Insert();
  AddAndLetWait(*insert, {1, 2, 1});
  EXPECT_NO_THROW(session_->Rollback());
  EXPECT_EQ(Rows(), 0);
}

TEST_F(TheSession, RaisesTheFailureOfARowThatWaitedOutsideATransactionAlsoAtARollback) {
  const auto insert = Insert();
  AddAndLetWait(*insert, {1, 2, 1});
  EXPECT_EQ(Raised([&] { session_->Rollback(); }).Number(), errors::kIntegrity);
  EXPECT_EQ(Rows(), 2);
}

TEST_F(TheSession, RaisesTheFailureOfAWaitingRowWhenGroupsAreAllowedAndWhenTheyEnd) {
  for (const bool may : {true, false}) {
    const auto insert = Insert();
    AddAndLetWait(*insert, {1, 2, 1});
    EXPECT_EQ(Raised([&] { session_->MayGroup(may); }).Number(), errors::kIntegrity) << may;
    EXPECT_EQ(Rows(), 2);
    session_->MayGroup(false);
    Write("delete from people");
    clock_.Pass(std::chrono::milliseconds(50));
  }
}

TEST_F(TheSession, InsertsUpdatesDeletesAndSelectsWithinOneGroup) {
  session_->MayGroup(true);
  below_.Restart();
  Write("insert into people values (1, 1)");
  EXPECT_EQ(Rows(), 1);
  Write("update people set floor = 2");
  Write("delete from people");
  EXPECT_THAT(Recorded({"Begin", "Commit"}), ElementsAre("Begin"));
}

TEST_F(TheSession, RaisesAtTheNextCallThatARowIsRefusedWhoseGroupCouldNotBeCommittedInTime) {
  session_->MayGroup(true);
  const auto insert = session_->Prepare("insert into people values (?, ?)");
  const Variant code = std::int32_t{17};
  const Variant floor = std::int16_t{4};
  const Variant* const row[] = {&code, &floor};
  Executed(*insert, row);
  below_.before = [isRefused = false](const std::string& operation) mutable {
    if (operation == "Commit") isRefused = true;
    if (isRefused && (operation == "Commit" || operation == "Step")) {
      throw Error(errors::kIntegrity, "Test", "The row is refused.");
    }
  };
  clock_.PassWhileAThreadWaits(std::chrono::milliseconds(50));
  below_.before = nullptr;
  const Error error = Raised([&] { session_->Catalog(); });
  EXPECT_EQ(error.Description(), "The row is refused.");
  EXPECT_EQ(error.DetailOf("key"), "of the row written with 17, 4");
  EXPECT_EQ(Rows(), 0);
}

TEST_F(TheSession, CommitsItsGroupBeforeAnUnheededRowThatIsSentAlone) {
  const auto insert = Insert(true);
  session_->MayGroup(true);
  Write("insert into people values (1, 1)");
  below_.Restart();
  Added(*insert, 2, false);
  EXPECT_THAT(Recorded({"Commit", "Step"}), ElementsAre("Commit", "Step"));
}

TEST_F(TheSession, PausesBeforeItDoesAgainWhatTheDatabaseTookBack) {
  session_->MayGroup(true);
  int steps = 0;
  below_.before = [&](const std::string& operation) {
    if (operation != "Step" || ++steps > 1) return;
    throw Error(errors::kProviderUnspecified, "Test", "Try again.").With("SQLSTATE", "40001");
  };
  Write("insert into people values (1, 1)");
  EXPECT_EQ(clock_.sleeps.size(), 1U);
  EXPECT_EQ(Rows(), 1);
}

TEST_F(TheSession, CommitsItsGroupBeforeATimeLimitBegins) {
  session_->MayGroup(true);
  Write("insert into people values (1, 1)");
  below_.Restart();
  session_->Timeout(std::chrono::seconds(5));
  EXPECT_THAT(Recorded({"Commit", "Timeout"}), ElementsAre("Commit", "Timeout"));
}

TEST_F(TheSession, SendsItsWaitingRowsAndCommitsItsGroupBeforeAnotherDatabaseIsSelected) {
  const auto insert = Insert();
  AddAndLetWait(*insert, {1, 2, 3});
  below_.Restart();
  session_->SelectCatalog("local");
  EXPECT_THAT(Recorded({"Add", "SelectCatalog"}), ElementsAre("Add", "SelectCatalog"));

  session_->MayGroup(true);
  Write("insert into people values (4, 1)");
  below_.Restart();
  session_->SelectCatalog("local");
  EXPECT_THAT(Recorded({"Commit", "SelectCatalog"}), ElementsAre("Commit", "SelectCatalog"));
}

TEST_F(TheSession, SendsItsWaitingRowsBeforeItCloses) {
  auto insert = Insert();
  AddAndLetWait(*insert, {1, 2, 3});
  session_->Close();
  insert.reset();
  session_ = sqlite_.Open(text_);
  EXPECT_EQ(Rows(), 3);
}

TEST_F(TheSession, ClosesTheDatabaseAlsoIfAWaitingRowIsRefused) {
  const auto insert = Insert();
  AddAndLetWait(*insert, {1, 2, 1});
  EXPECT_EQ(Raised([&] { session_->Close(); }).Number(), errors::kIntegrity);
  EXPECT_EQ(below_.CountOf("Close"), 1);
}

TEST_F(TheSession, AsksAfterEachBatchHowManyRowsTheDatabaseTakes) {
  std::size_t most = 4;
  std::vector<std::size_t> sent;
  below_.most = [&] { return most; };
  below_.beforeAdd = [&](std::span<const Variant> values) {
    sent.push_back(values.size() / 2);
    most = 2;
  };
  const auto insert = Insert();
  AddAndLetWait(*insert, {1, 2, 3, 4, 5});
  EXPECT_EQ(Rows(), 5);
  AddAndLetWait(*insert, {6, 7});
  EXPECT_EQ(Rows(), 7);
  AddAndLetWait(*insert, {8, 9, 10});
  EXPECT_EQ(Rows(), 10);
  EXPECT_THAT(sent, ElementsAre(4, 2, 2));
}

TEST_F(TheSession, TriesAnUnheededRowAgainOnceTheDatabaseHasTakenAnotherAfterOneInVain) {
  BatchingDriverSession session(sqlite_.Open(text_), clock_, nullptr);
  session.Timeout(std::chrono::seconds(30));
  int tries = 0;
  const auto refusesFirst = [&](int times) {
    tries = 0;
    return [&tries, times] {
      if (++tries <= times) throw Error(errors::kProviderUnspecified, "Test", "Try again.").With("SQLSTATE", "40001");
    };
  };
  Raised([&] { session.AgainUnlessInVain(refusesFirst(1'000'000)); });
  EXPECT_GT(tries, 30);
  Raised([&] { session.AgainUnlessInVain(refusesFirst(1'000'000)); });
  EXPECT_EQ(tries, 1);  // another one would wait as long
  session.AgainUnlessInVain(refusesFirst(0));
  EXPECT_EQ(tries, 1);
  session.AgainUnlessInVain(refusesFirst(2));
  EXPECT_EQ(tries, 3);
}

// The helper thread sends the batch as soon as it is full, and is held up until the program's thread waits.
TEST_F(TheSession, ReadsNothingWhileABatchIsSent) {
  constexpr std::int32_t kBatch = 128;
  const auto query = session_->Prepare("select 5");
  query->Step();
  const auto insert = Insert();
  std::latch isOnItsWay(1);
  std::mutex mutex;
  std::vector<std::string> done;
  const auto note = [&](const std::string& operation) {
    const std::lock_guard guard(mutex);
    done.push_back(operation);
  };
  below_.before = [&](const std::string& operation) {
    if (operation == "Value") note(operation);
    if (operation != "Add") return;
    isOnItsWay.count_down();
    clock_.AwaitWaitingThread();
    note(operation);
  };
  for (std::int32_t code = 0; code <= kBatch; ++code) Added(*insert, code, true);
  isOnItsWay.wait();
  EXPECT_EQ(query->Value(0).ToInt32(), 5);
  query->Reset();
  EXPECT_EQ(session_->Catalog(), "local");
  EXPECT_THAT(done, ElementsAre("Add", "Value"));
  below_.before = nullptr;
}

}  // namespace
}  // namespace qmx::test
