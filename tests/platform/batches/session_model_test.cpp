// A session with groups over a database that refuses statements, rolls back and loses answers at random. In 100,000
// sequences of calls and answers, the session's results must agree with the saved rows.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/batches/session.h"
#include "platform/execution.h"
#include "platform/transaction_state.h"

namespace qmx::test {
namespace {

constexpr std::uint32_t kParts = 5;  // tests that run beside each other
constexpr int kSequences = 100'000 / kParts;
constexpr int kMostInASession = 20;  // its thread costs more than they do

// How the database answers a call.
enum class Answer {
  Done,
  Refused,     // not executed; the transaction stays open
  TakenBack,   // not executed, and the transaction is rolled back
  LostDone,    // executed, but the answer is lost
  LostUndone,  // not executed, and the answer is lost
};

// One connection's rows, as the database knows them.
struct Server {
  std::vector<int> saved;
  std::vector<int> open;
  bool isOpen = false;

  void Add(int row) { (isOpen ? open : saved).push_back(row); }
  void End(bool keeps) {
    if (keeps) saved.insert(saved.end(), open.begin(), open.end());
    open.clear();
    isOpen = false;
  }
};

class Script {
 public:
  explicit Script(std::uint32_t seed) : random_(seed) {}
  void Begin() { unwell_ = Number(4) * 6; }
  int Number(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random_); }
  Answer Next() {
    if (Number(100) >= unwell_) return Answer::Done;
    return static_cast<Answer>(1 + Number(4));
  }

 private:
  std::mt19937 random_;
  int unwell_ = 0;  // percent
};

// Follows the contract of DriverSession, as the real sessions do.
class ScriptedSession : public DriverSession {
 public:
  ScriptedSession(Server& server, Script& script) : server_(server), script_(script) {}

  std::unique_ptr<DriverStatement> Prepare(const std::string& text) override {
    state_.RequireKnown();
    return std::make_unique<Statement>(*this, text);
  }
  TableDescription Describe(const std::string&) override { return {}; }
  std::string QuoteIdentifier(const std::string& name) const override { return name; }
  std::string System() const override { return "Script"; }
  std::string Catalog() override { return ""; }
  void SelectCatalog(const std::string&) override {}
  void Timeout(std::chrono::seconds) override {}
  GroupLimits Grouping() override { return {4, std::chrono::hours(1)}; }

  void Begin() override {
    state_.RequireNone("A transaction cannot begin");
    if (script_.Next() != Answer::Done) Refuse();
    server_.isOpen = true;
    state_.Opened();
  }
  void Commit() override {
    state_.RequireKnown();
    if (!state_.IsOpen()) return;
    switch (const Answer answer = script_.Next()) {
      case Answer::Done:
        server_.End(true);
        return state_.Ended();
      case Answer::Refused:
        Refuse();
      case Answer::TakenBack:
        server_.End(false);
        Refuse();
      case Answer::LostDone:
      case Answer::LostUndone:
        server_.End(answer == Answer::LostDone);
        Lose();
    }
  }
  void Rollback() override {
    state_.RequireKnown();
    if (!state_.IsOpen()) return;
    const bool isDone = script_.Next() == Answer::Done;
    server_.End(false);  // the server does so anyway when the connection ends
    if (!isDone) Lose();
    state_.Ended();
  }
  void Close() override {
    server_.End(false);
    state_.RequireNone("The connection was closed, and rows were lost,");
  }

 private:
  class Statement : public DriverStatement {
   public:
    Statement(ScriptedSession& session, const std::string& text) : session_(session), text_(text) {}
    const std::vector<ColumnDescription>& Columns() const override { return columns_; }
    void Bind(std::size_t, const Variant&) override {}
    bool Step() override { return session_.Step(text_); }
    Variant Value(std::size_t) override { return {}; }
    std::int64_t RowsAffected() const override { return 1; }
    void Reset() noexcept override {}

   private:
    ScriptedSession& session_;
    std::string text_;
    std::vector<ColumnDescription> columns_;
  };

  bool Step(const std::string& text) {
    state_.RequireKnown();
    const bool writes = text.starts_with("insert ");
    const int row = writes ? std::stoi(text.substr(7)) : 0;
    switch (const Answer answer = script_.Next()) {
      case Answer::Done:
        if (writes) server_.Add(row);
        return false;
      case Answer::Refused:
        Refuse();
      case Answer::TakenBack:  // the next statement begins another transaction, as one driver has it
        server_.open.clear();
        Refuse();
      case Answer::LostDone:
      case Answer::LostUndone:
        if (writes && answer == Answer::LostDone) server_.Add(row);
        server_.End(false);
        Lose();
    }
    return false;
  }

  [[noreturn]] static void Refuse() { throw Error(errors::kProviderUnspecified, "Script", "Refused."); }
  [[noreturn]] void Lose() {
    try {
      throw Error(errors::kProviderUnspecified, "Script", "The answer is lost.");
    } catch (const Error&) {
      state_.Lose();
      throw;
    }
  }

  Server& server_;
  Script& script_;
  TransactionState state_;
};

// What the program does with the session, and what it may believe.
class Program {
 public:
  explicit Program(std::uint32_t seed) : script_(seed), session_(std::make_unique<ScriptedSession>(server_, script_)) {}

  // One sequence of calls. Empty when everything agrees.
  std::string Run() {
    script_.Begin();
    Call([&] { session_.MayGroup(true); }, true);
    for (int step = script_.Number(12); step > 0 && problem_.empty(); --step) Do(script_.Number(10));
    const bool isTogether = Call([&] { session_.MayGroup(false); }, true);
    if (isTogether && !isLost_) ExpectAllSaved("after the group's end");
    Call([&] { session_.Commit(); });
    return problem_;
  }
  bool IsLost() const { return isLost_; }

  // Likewise, after the last sequence.
  std::string Close() {
    const bool isClosed = Call([&] { session_.Close(); });
    if (isClosed) ExpectAllSaved("after a close that raised nothing");
    return problem_;
  }

 private:
  // True if it raised nothing.
  template <typename Use>
  bool Call(Use&& use, bool maySucceedWhenLost = false) {
    try {
      use();
    } catch (const Error& error) {
      Failed(error);
      return false;
    }
    if (isLost_ && !maySucceedWhenLost) Tell("a call succeeds though the session was lost");
    return true;
  }

  // What was believed to be saved may be gone after a failure, from some row on; what follows it counts from there.
  void Failed(const Error& error) {
    isLost_ = isLost_ || error.Description().find("The answer is lost.") != std::string::npos;
    if (isLost_) believed_.push_back(last_);  // saved perhaps
    const std::size_t rows = server_.saved.size();
    if (rows > believed_.size() || !std::equal(server_.saved.begin(), server_.saved.end(), believed_.begin())) {
      Tell("another row is saved than the first ones that were written");
    }
    believed_ = server_.saved;
    if (server_.isOpen && !isWithin_) Tell("a transaction is open that nobody commits");
  }

  void Do(int what) {
    if (what < 7) return Insert();
    if (what == 7) return Select();
    InsertWithin(what == 8);
  }

  void Execute(const std::string& text) {
    const std::unique_ptr<DriverStatement> statement = session_.Prepare(text);
    Execution(*statement).Run();
  }

  void Insert() {
    const int row = ++last_;
    if (Call([&] { Execute("insert " + std::to_string(row)); })) believed_.push_back(row);
  }

  void Select() {
    Call([&] { Execute("select 1"); });
  }

  // As a row is changed that has no key.
  void InsertWithin(bool changesItsMind) {
    const int row = ++last_;
    if (!Call([&] { session_.Begin(); })) return;
    isWithin_ = true;
    const bool isWritten = Call([&] { Execute("insert " + std::to_string(row)); });
    const bool isSaved = isWritten && !changesItsMind && Call([&] { session_.Commit(); });
    if (isSaved) believed_.push_back(row);
    const bool isOver = isSaved || Call([&] { session_.Rollback(); });
    isWithin_ = false;
    if (isOver) ExpectAllSaved("after a transaction");
  }

  void ExpectAllSaved(const std::string& when) {
    if (server_.saved != believed_) Tell("not just the rows that were written are saved " + when);
    if (server_.isOpen) Tell("a transaction is open " + when);
  }

  void Tell(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
  }

  Script script_;
  Server server_;
  BatchingDriverSession session_;
  std::vector<int> believed_;
  int last_ = 0;
  bool isWithin_ = false;  // a transaction of its own
  bool isLost_ = false;
  std::string problem_;
};

class ASession : public testing::TestWithParam<std::uint32_t> {};
INSTANTIATE_TEST_SUITE_P(InPart, ASession, testing::Range(0U, kParts));

TEST_P(ASession, AgreesWithItsDatabaseWhateverThatAnswers) {
  int sequences = 0;
  for (std::uint32_t seed = GetParam(); sequences < kSequences; seed += kParts) {
    SCOPED_TRACE("session " + std::to_string(seed));
    Program program(seed);
    for (int place = 0; place < kMostInASession && !program.IsLost(); ++place, ++sequences) {
      ASSERT_EQ(program.Run(), "") << "in sequence " << place;
    }
    ASSERT_EQ(program.Close(), "");
  }
}

}  // namespace
}  // namespace qmx::test
