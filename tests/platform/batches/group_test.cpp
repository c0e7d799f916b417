// A group by itself, over a session that records its calls.
#include "platform/batches/group.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/fake_steady_clock.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class RecordingSession : public DriverSession {
 public:
  std::unique_ptr<DriverStatement> Prepare(const std::string& text) override {
    return std::make_unique<Statement>(*this, text);
  }
  TableDescription Describe(const std::string&) override { return {}; }
  std::string QuoteIdentifier(const std::string& name) const override { return name; }
  std::string System() const override { return "Recording"; }
  std::string Catalog() override { return ""; }
  void SelectCatalog(const std::string&) override {}
  void Timeout(std::chrono::seconds) override {}
  void Begin() override { Note("Begin"); }
  void Rollback() override { Note("Rollback"); }
  void Commit() override { Note("Commit"); }
  void Close() override {}
  GroupLimits Grouping() override {
    Note("Grouping");
    return limits;
  }

  GroupLimits limits{2, milliseconds(40)};
  std::string refused;  // this call, once
  std::int32_t number = errors::kProviderUnspecified;
  std::vector<std::string> calls;

 private:
  class Statement : public DriverStatement {
   public:
    Statement(RecordingSession& session, std::string text) : session_(session), text_(std::move(text)) {}
    const std::vector<ColumnDescription>& Columns() const override { return columns_; }
    void Bind(std::size_t, const Variant&) override {}
    bool Step() override {
      session_.Note(text_);
      return false;
    }
    Variant Value(std::size_t) override { return {}; }
    std::int64_t RowsAffected() const override { return 1; }
    void Reset() noexcept override {}

   private:
    RecordingSession& session_;
    std::string text_;
    std::vector<ColumnDescription> columns_;
  };

  void Note(const std::string& call) {
    calls.push_back(call);
    if (call != refused) return;
    refused.clear();
    throw Error(number, "Recording", call + " was refused.");
  }
};

class AGroup : public testing::Test {
 protected:
  void Write(const std::string& text) {
    const auto statement = session_.Prepare(text);
    EXPECT_EQ(group_.Write(*statement, text, {}), 1);
  }

  RecordingSession session_;
  FakeSteadyClock clock_;
  Retries retries_{clock_};
  Group group_{session_, clock_, retries_};
};

TEST_F(AGroup, AsksForItsLimitsByItselfAndOnce) {
  group_.Allow(true);
  for (const char* text : {"A", "B", "C", "D"}) Write(text);
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A", "B", "Commit", "Begin", "C", "D", "Commit"));
}

TEST_F(AGroup, IsNotOpenedUntilItIsAllowed) {
  EXPECT_FALSE(group_.MayOpen());
  Write("A");
  EXPECT_THAT(session_.calls, ElementsAre("A"));
}

TEST_F(AGroup, IsNotOpenedIfTheDatabaseHasNone) {
  session_.limits = {};
  group_.Allow(true);
  Write("A");
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "A"));
}

TEST_F(AGroup, IsDueAfterTheTimeThatItsDatabaseAllows) {
  group_.Allow(true);
  Write("A");
  EXPECT_TRUE(group_.IsOpen());
  EXPECT_EQ(group_.Due(), clock_.Now() + milliseconds(40));
  group_.Commit();
  EXPECT_FALSE(group_.IsOpen());
}

TEST_F(AGroup, IsNotOpenedWithinATransactionOfTheProgram) {
  group_.Allow(true);
  group_.BeginOwn();
  EXPECT_FALSE(group_.MayOpen());
  Write("A");
  group_.CommitOwn();
  EXPECT_THAT(session_.calls, ElementsAre("Begin", "A", "Commit"));
  EXPECT_TRUE(group_.MayOpen());
}

TEST_F(AGroup, LeavesTheProgramsCommitsOutWhileItIsAllowed) {
  group_.Allow(true);
  Write("A");
  group_.CommitOwn();
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A"));
}

TEST_F(AGroup, PassesTheProgramsCommitsOnWhileItIsNotAllowed) {
  Write("A");
  group_.CommitOwn();
  EXPECT_THAT(session_.calls, ElementsAre("A", "Commit"));
}

TEST_F(AGroup, IsRolledBackAndDoneAgainWhenAStatementIsRefused) {
  group_.Allow(true);
  Write("A");
  session_.refused = "B";
  Write("B");
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A", "B", "Rollback", "A", "B"));
}

TEST_F(AGroup, IsRolledBackAndDoneAgainWhenItsCommitIsRefused) {
  group_.Allow(true);
  Write("A");
  session_.refused = "Commit";
  group_.Commit();
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A", "Commit", "Rollback", "A"));
}

TEST_F(AGroup, IsDoneAgainWithItsOwnStatementsAndNotThoseOfTheOneBefore) {
  group_.Allow(true);
  for (const char* text : {"A", "B", "C"}) Write(text);
  session_.refused = "D";
  Write("D");
  EXPECT_THAT(session_.calls,
              ElementsAre("Grouping", "Begin", "A", "B", "Commit", "Begin", "C", "D", "Rollback", "C", "D"));
}

TEST_F(AGroup, IsDoneAgainWithoutAStatementThatTookTooLong) {
  group_.Allow(true);
  Write("A");
  session_.refused = "B";
  session_.number = errors::kTimeout;
  EXPECT_EQ(Raised([&] { Write("B"); }).Description(), "B was refused.");
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A", "B", "Rollback", "A"));
}

TEST_F(AGroup, IsOpenedWithTheNextStatementWhereItCouldNotBegin) {
  group_.Allow(true);
  session_.refused = "Begin";
  EXPECT_EQ(Raised([&] { Write("A"); }).Description(), "Begin was refused.");
  EXPECT_FALSE(group_.IsOpen());
  Write("A");
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "Begin", "A"));
}

TEST_F(AGroup, IsCommittedBeforeAStatementThatMayNotBeInIt) {
  group_.Allow(true);
  Write("A");
  group_.Allow(false);
  Write("B");
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A", "Commit", "B"));
}

TEST_F(AGroup, IsNotCommittedUnlessItIsOpen) {
  group_.Allow(true);
  Write("A");
  group_.Commit();
  group_.Commit();
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A", "Commit"));
}

TEST_F(AGroup, MayBeOpenedAfterATransactionOfTheProgramThatDidNotBeginOrWasRolledBack) {
  group_.Allow(true);
  session_.refused = "Begin";
  EXPECT_EQ(Raised([&] { group_.BeginOwn(); }).Description(), "Begin was refused.");
  EXPECT_FALSE(group_.IsWithinOwn());
  group_.BeginOwn();
  EXPECT_TRUE(group_.IsWithinOwn());
  group_.RollbackOwn();
  EXPECT_TRUE(group_.MayOpen());
}

TEST_F(AGroup, RaisesAtEveryUseOnceItsOwnRollbackFailed) {
  group_.Allow(true);
  Write("A");
  session_.refused = "Rollback";
  EXPECT_EQ(Raised([&] { group_.Redo(); }).Description(), "Rollback was refused.");
  EXPECT_FALSE(group_.IsOpen());
  EXPECT_THAT(Raised([&] { group_.Commit(); }).Description(), testing::HasSubstr("Rollback was refused."));
  EXPECT_THAT(Raised([&] { Write("B"); }).Description(), testing::HasSubstr("Rollback was refused."));
  EXPECT_THAT(session_.calls, ElementsAre("Grouping", "Begin", "A", "Rollback"));
}

TEST_F(AGroup, RaisesAtEveryUseOnceARollbackFailed) {
  group_.Allow(true);
  session_.refused = "Rollback";
  EXPECT_EQ(Raised([&] { group_.RollbackOwn(); }).Description(), "Rollback was refused.");
  EXPECT_THAT(Raised([&] { group_.Commit(); }).Description(), testing::HasSubstr("Rollback was refused."));
  EXPECT_THAT(Raised([&] { Write("A"); }).Description(), testing::HasSubstr("Rollback was refused."));
}

}  // namespace
}  // namespace qmx::test
