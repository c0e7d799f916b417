// Rows whose outcome nobody needs: they go out together, and one that is refused is lost alone.
#include <algorithm>
#include <chrono>

#include "platform/batches/driver.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/fake_steady_clock.h"

namespace qmx::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;
using Texts = std::vector<std::string>;

class UnheededRows : public testing::TestWithParam<DriverUnderTest> {
 protected:
  UnheededRows() : base_(GetParam().make()), below_(base_->PlainDriver()), connection_({&batching_}, nullptr) {
    connection_.Open(base_->ConnectionText(), "", "");
    connection_.Execute("create table people (code varchar(20) not null primary key, name varchar(20), born " +
                        GetParam().dateTimeType + ")");
    connection_.Execute("create table notes (note varchar(20))");
  }

  // Only there may rows wait.
  bool HasGroups() const { return GetParam().name != "SQLiteOverOdbc"; }

  static SqlText Person(const std::string& code, const std::string& name) {
    SqlText text("insert into people (code,name) Values ('");
    return text.Value(code).Append("','").Value(name).Append("')");
  }
  void Add(const std::string& code, const std::string& name = "new") { connection_.ExecuteSoon(Person(code, name)); }

  template <typename Call>
  static void PassOver(Call&& call) {
    try {
      call();
    } catch (const Error&) {
    }
  }

  std::unique_ptr<Connection> Another() {
    auto other = std::make_unique<Connection>(std::vector<Driver*>{&base_->PlainDriver()}, nullptr);
    other->Open(base_->ConnectionText(), "", "");
    return other;
  }

  static Texts ReadThrough(Connection& connection, const std::string& query) {
    Recordset records(nullptr);
    records.Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    Texts found;
    for (; !records.Eof(); records.MoveNext()) found.push_back(records.Fields(std::size_t{0}).Value().ToText());
    return found;
  }
  Texts Read(const std::string& query) { return ReadThrough(*Another(), query); }  // as another program
  Texts Codes() { return Read("select code from people order by code"); }

  std::unique_ptr<TestDatabase> base_;
  FaultyDriver below_;
  FakeSteadyClock clock_;
  BatchingDriver batching_{below_, clock_};
  Connection connection_;
};
INSTANTIATE_TEST_SUITE_P(Over, UnheededRows, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(UnheededRows, GoOutWithFewStatementsAndCommits) {
  connection_.Together([&] {
    below_.Restart();
    for (int code = 1000; code < 2000; ++code) Add(std::to_string(code));
  });
  EXPECT_EQ(Codes().size(), 1000);
  EXPECT_EQ(below_.CountOf("Begin"), below_.CountOf("Commit"));
  if (!HasGroups()) return;
  EXPECT_LE(below_.CountOf("Step"), 20);  // 1, 128 seven times, and halves of that for the rest
  EXPECT_LE(below_.CountOf("Commit"), 8);
}

TEST_P(UnheededRows, ThatAreRefusedAreLostAlone) {
  for (const char* code : {"1000", "1150", "1151", "1399"}) connection_.Execute(Person(code, "old"));
  connection_.Together([&] {
    EXPECT_EQ(Raised([&] { Add("1000"); }).Number(), -2147217873);  // the first one does not wait
    for (int code = 1001; code < 1400; ++code) PassOver([&] { Add(std::to_string(code)); });
  });
  EXPECT_EQ(Codes().size(), 400);
  EXPECT_THAT(Read("select code from people where name = 'old' order by code"),
              ElementsAre("1000", "1150", "1151", "1399"));
}

TEST_P(UnheededRows, AreSentOneByOneWhereTheirTransactionIsRefused) {
  int refusals = 0;
  below_.before = [&](const std::string& operation) {
    if (operation == "Commit" && refusals++ == 0) throw Error(errors::kDiskFull, "Test", "No space is left.");
  };
  connection_.Together([&] {
    for (int code = 1000; code < 1300; ++code) Add(std::to_string(code));
  });
  below_.before = nullptr;
  EXPECT_EQ(refusals > 0, HasGroups());
  EXPECT_EQ(Codes().size(), 300);
}

// As a cluster's node does that joins, or has lost the others.
void AskToTryAgain() {
  throw Error(errors::kProviderUnspecified, "ODBC", "Not ready.").With("SQLSTATE", "08S01").With("native code", "1047");
}

TEST_P(UnheededRows, ThatTheDatabaseTookBackAreCommittedTogetherAgain) {
  int commits = 0;
  below_.before = [&](const std::string& operation) {
    if (operation == "Commit" && ++commits <= 2) AskToTryAgain();
  };
  connection_.Together([&] {
    below_.Restart();
    for (int code = 1000; code < 1300; ++code) Add(std::to_string(code));
  });
  below_.before = nullptr;
  EXPECT_EQ(Codes().size(), 300);
  if (!HasGroups()) return;
  EXPECT_EQ(batching_.Retries(), 2);
  EXPECT_LE(below_.CountOf("Step"), 16);  // 1, 128 twice, and halves of that for the rest
}

TEST_P(UnheededRows, WaitForOneTimeOutOnlyWhileTheDatabaseAsksToTryThemAgain) {
  connection_.Together([&] {
    for (const char* code : {"A", "B"}) Add(code);
    Codes();
    EXPECT_EQ(connection_.Execute("delete from people where code = 'B'"), 1);
    below_.before = [](const std::string& operation) {
      if (operation.starts_with("Bind insert")) AskToTryAgain();
    };
    const auto begin = clock_.Now();
    for (int code = 1000; code < 1600; ++code) PassOver([&] { Add(std::to_string(code)); });
    EXPECT_EQ(connection_.Execute("delete from people where code = 'A'"), 1);  // sends them all
    EXPECT_GT(clock_.Now() - begin, seconds(29));
    EXPECT_LT(clock_.Now() - begin, seconds(31));
    below_.before = nullptr;
    for (const char* code : {"C", "D", "E"}) Add(code);
  });
  EXPECT_THAT(Codes(), ElementsAre("C", "D", "E"));
}

TEST_P(UnheededRows, AreSentBeforeAnythingIsReadOrDone) {
  connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) Add(code);
    EXPECT_THAT(ReadThrough(connection_, "select code from people order by code"), ElementsAre("A", "B", "C"));
    for (const char* code : {"D", "E"}) Add(code);
    EXPECT_EQ(connection_.Execute("update people set name = 'changed'"), 5);
  });
  EXPECT_EQ(Codes().size(), 5);
}

TEST_P(UnheededRows, AreSentWhenTheWorkEnds) {
  connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) Add(code);
    EXPECT_EQ(Codes(), HasGroups() ? Texts{"A"} : Texts({"A", "B", "C"}));
  });
  EXPECT_THAT(Codes(), ElementsAre("A", "B", "C"));
}

TEST_P(UnheededRows, AreSentAlsoWhileNobodyCalls) {
  if (!HasGroups()) return;
  connection_.Together([&] {
    for (const char* code : {"A", "B"}) Add(code);
    clock_.PassWhileAThreadWaits(milliseconds(49));
    EXPECT_THAT(Codes(), ElementsAre("A"));
    clock_.PassWhileAThreadWaits(milliseconds(1));
    EXPECT_THAT(Codes(), ElementsAre("A", "B"));
    Add("C");  // waits also after a pause
    EXPECT_THAT(Codes(), ElementsAre("A", "B"));
  });
  EXPECT_THAT(Codes(), ElementsAre("A", "B", "C"));
}

TEST_P(UnheededRows, DoNotWaitWhereNothingMayBeCommittedTogether) {
  below_.Restart();
  for (const char* code : {"A", "B", "C"}) Add(code);
  EXPECT_THAT(Codes(), ElementsAre("A", "B", "C"));
  EXPECT_EQ(Raised([&] { Add("C"); }).Number(), -2147217873);
  EXPECT_EQ(below_.CountOf("Begin"), 0);
}

TEST_P(UnheededRows, DoNotWaitWhereSomebodyHearsOfEachStatement) {
  class Listener : public DatabaseObserver {
   public:
    bool HearsOfStatements() const override { return true; }
    void Executed(std::string_view, std::int64_t affected, const Error* error) override {
      heard.push_back(error ? error->Number() : static_cast<std::int32_t>(affected));
    }
    std::vector<std::int32_t> heard;
  } listener;
  Connection connection({&batching_}, &listener);
  connection.Open(base_->ConnectionText(), "", "");
  connection.Together([&] {
    for (const char* code : {"A", "B"}) connection.ExecuteSoon(Person(code, "new"));
    EXPECT_EQ(Raised([&] { connection.ExecuteSoon(Person("B", "new")); }).Number(), -2147217873);
    connection.ExecuteSoon(Person("C", "new"));
  });
  EXPECT_THAT(listener.heard, ElementsAre(1, 1, -2147217873, 1));
  EXPECT_THAT(Codes(), ElementsAre("A", "B", "C"));
}

TEST_P(UnheededRows, HaveTheValuesThatTheyWouldHaveAlone) {
  const auto text = [](const std::string& code, const std::string& name, const Variant& born) {
    SqlText statement("insert into people (code,name,born) values ('");
    return statement.Value(code).Append("','").Value(name).Append("','").Value(born).Append("')");
  };
  const std::vector<std::pair<std::string, DateTime>> values = {
      {"", DateTime::FromDate(2026, 11, 5)},
      {" two ", DateTime::FromDate(1899, 12, 30).PlusTime(14, 5, 9)},
      {"\xC3\xA4\xE2\x82\xAC", DateTime::FromDate(2000, 2, 29).PlusTime(23, 59, 59)},
      {"12", DateTime::FromDate(9999, 12, 31)},
  };
  connection_.Together([&] {
    for (std::size_t i = 0; i < values.size(); ++i) {
      connection_.ExecuteSoon(text("A" + std::to_string(i), values[i].first, values[i].second));
    }
  });
  for (std::size_t i = 0; i < values.size(); ++i) {
    connection_.Execute(text("B" + std::to_string(i), values[i].first, values[i].second));
  }
  const auto rows = [&](const std::string& letter, const std::string& column) {
    return Read("select " + column + " from people where code like '" + letter + "%' order by code");
  };
  EXPECT_EQ(rows("A", "name"), rows("B", "name"));
  EXPECT_EQ(rows("A", "born"), rows("B", "born"));
  EXPECT_EQ(rows("A", "cast(born as char(30))"), rows("B", "cast(born as char(30))"));
}

TEST_P(UnheededRows, OfAStatementThatABadValueBreaksAreRefusedAtOnce) {
  connection_.Together([&] {
    for (const char* code : {"A", "B"}) Add(code);
    EXPECT_EQ(Raised([&] { Add("C", "it's"); }).Number(), -2147217900);
    Add("D");
  });
  EXPECT_THAT(Codes(), ElementsAre("A", "B", "D"));
}

TEST_P(UnheededRows, OfAStatementInAnotherFormAreWrittenAtOnce) {
  connection_.Together([&] {
    for (const char* code : {"A", "B", "C"}) {
      connection_.ExecuteSoon(SqlText("insert into people (code,name) select '").Value(code).Append("', 'new'"));
    }
    connection_.ExecuteSoon(SqlText("update people set name = '").Value("changed").Append("' where code = 'B'"));
    EXPECT_THAT(ReadThrough(connection_, "select name from people order by code"),
                ElementsAre("new", "changed", "new"));
  });
  EXPECT_THAT(Codes(), ElementsAre("A", "B", "C"));
}

// In a table without a key, where a row that is sent twice is there twice.
TEST_P(UnheededRows, AreNeverThereTwiceAndOneIsLostAtMostWhateverFailsOnce) {
  const std::string all = "ABCDEFGHIJKL";
  for (const FaultKind kind : {FaultKind::Before, FaultKind::After, FaultKind::TakenBack}) {
    for (std::int64_t operation = 1;; ++operation) {
      SCOPED_TRACE(NameOf(kind) + " at operation " + std::to_string(operation));
      connection_.Execute("delete from notes");
      auto connection = std::make_unique<Connection>(std::vector<Driver*>{&batching_}, nullptr);
      connection->Open(base_->ConnectionText(), "", "");
      below_.Restart();
      below_.FailAs(kind);
      below_.FailAt(operation);
      PassOver([&] {
        connection->Together([&] {
          for (const char note : all) {
            PassOver([&] {
              connection->ExecuteSoon(
                  SqlText("insert into notes (note) values ('").Value(std::string(1, note)).Append("')"));
            });
          }
        });
      });
      const bool hasFailed = below_.HasFailed();
      const bool isAnswerLost = kind == FaultKind::After && below_.FirstFailed().ends_with("Commit");
      below_.FailAt(0);
      below_.Restart();
      connection.reset();
      std::string notes;
      for (const std::string& note : Read("select note from notes order by note")) notes += note;
      EXPECT_EQ(std::adjacent_find(notes.begin(), notes.end()), notes.end()) << notes;
      if (!isAnswerLost) {
        EXPECT_GE(notes.size(), hasFailed ? all.size() - 1 : all.size()) << notes;
      }
      if (!hasFailed) break;
      ASSERT_LT(operation, 200);
    }
  }
}

}  // namespace
}  // namespace qmx::test
