// SQL texts, run on SQLite: the shared, prepared form does what the plain text does, and a value between quotes reaches
// the rows that have it, and no others. SQLite finds the end of a statement, and its table, where the product does.
//
// The first line is a value, the second a number. The rest chooses texts.
#include "platform/sql_text.h"

#include <sqlite3.h>

#include <cstdint>
#include <random>
#include <set>

#include "fuzz/input.h"
#include "fuzz/plain_numbers.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/database.h"
#include "platform/prepared_statements.h"
#include "platform/sql_statement.h"
#include "platform/sqlite/driver.h"
#include "tests/platform/database/written_texts.h"
#include "tests/support/temp_folder.h"

namespace qmx::fuzz {
namespace {

// A database with the table t.
class Side {
 public:
  Side() : session_(driver_.Open(ConnectionText(Text()))), prepared_(*session_, unit_) {
    Run("pragma synchronous=off");
    Run(test::CreateT(test::kTypesOfSqlite));
  }

  std::string Text() const { return "Provider=SQLite;Mode=Create;Data Source=" + (folder_ / "local.db"); }

  void Fill() {
    Run("delete from t");
    Run(test::kFillT);
  }
  void AddRow(const std::string& code, std::int32_t n) {
    const Variant values[] = {code, n};
    const auto adding = session_->Prepare("insert or ignore into t (code,n) values (?,?)");
    adding->Bind(0, values[0]);
    adding->Bind(1, values[1]);
    adding->Step();
  }
  std::string AsItStands(const SqlText& text) {
    return test::OutcomeOf([&] { return test::Outcome(*session_->Prepare(text.Text(&DateTime::ToFullText))); });
  }
  std::string Shared(const SqlText& text, bool mayWait = false) {
    return test::OutcomeOf([&] { return test::Outcome(ConnectionStatement(prepared_, text, mayWait)); });
  }
  std::set<std::string> Codes() {
    const auto reading = session_->Prepare("select code from t");
    std::set<std::string> codes;
    while (reading->Step()) codes.insert(reading->Value(0).ToText());
    return codes;
  }

 private:
  void Run(const std::string& text) {
    const auto running = session_->Prepare(text);
    while (running->Step()) continue;
  }

  test::TempFolder folder_{test::TempFolder::Place::InMemory};
  SqliteDriver driver_;
  std::unique_ptr<DriverSession> session_;
  UnitOfWork unit_{*session_};
  PreparedStatements prepared_;
};

void HaveTheSameEffect(Input& input, const std::string& moment) {
  static Side& plain = *new Side;
  static Side& shared = *new Side;
  constexpr int kMostTexts = 12;
  plain.Fill();
  shared.Fill();
  std::minstd_rand behindTheEnd;
  test::TextWriter writer(
      [&] { return input.IsAtEnd() ? static_cast<std::uint32_t>(behindTheEnd()) : input.Next<std::uint16_t>(); });
  SqlText text("restarted");
  text.Restart(" delete from t where d='").Moment(moment).Append("'");
  const bool isWhole = NumberRaised([&] { text.Check(); }) == 0;
  if (isWhole) RequireSame(shared.Shared(text), plain.AsItStands(text), "the outcome for the moment " + Shown(moment));
  std::string last;
  for (int i = 0; i < kMostTexts && !input.IsAtEnd(); ++i) {
    text = writer.Text();
    last = text.Text().substr(0, 1000);
    RequireSame(shared.Shared(text, i % 2 == 1), plain.AsItStands(text),
                "the outcome of the shared form of " + Shown(last));
  }
  const SqlText all("select * from t");
  RequireSame(shared.AsItStands(all), plain.AsItStands(all), "the rows after " + Shown(last));
}

// Deletes by a code, and by a code and a number.
void ReachNoOtherRow(const std::string& value, const std::string& number) {
  static Side& side = *new Side;
  static Connection& connection = [&]() -> Connection& {
    static SqliteDriver& driver = *new SqliteDriver;
    auto& made = *new Connection({&driver}, nullptr);
    made.Open(side.Text(), "", "");
    return made;
  }();
  const bool isText = value.find_first_of(std::string_view("'\0", 2)) == std::string::npos;
  const std::optional<double> plainNumber = PlainNumber(number);
  for (const bool withNumber : {false, true}) {
    side.Fill();
    for (const std::string& code : {value, value + " ", "x" + value, value + "%"}) {
      if (code.find('\0') == std::string::npos) side.AddRow(code, 7);
    }
    std::set<std::string> expected = side.Codes();
    SqlText text = SqlText("delete from t where code='").Value(value).Append("'");
    if (withNumber) text.Append(" and n=").Value(number);
    const std::int32_t raised = NumberRaised([&] { connection.Execute(text); });
    const bool isWhole = isText && (!withNumber || plainNumber);
    Require(raised == (isWhole ? 0 : errors::kCommand), "whether " + Shown(text.Text()) + " is refused");

    const bool isExample = value == "A1" || value == "A2" || value == "a1" || value.empty();  // has another number
    const bool isReached = !withNumber || (plainNumber && *plainNumber == 7);
    // SQLite reads long numbers in its own way, so only the other rows count then.
    const bool isUncertain = withNumber && (isExample || number.size() > 15);
    std::set<std::string> left = side.Codes();
    if (raised == 0 && (isReached || isUncertain)) expected.erase(value);
    if (isUncertain) left.erase(value), expected.erase(value);
    Require(left == expected, "the rows that " + Shown(text.Text()) + " leaves");
  }
}

// A statement of SQLite's own; null if the text begins with none, or with one that SQLite refuses.
class OwnStatement {
 public:
  OwnStatement(sqlite3* database, const char* text)
      : isRefused_(sqlite3_prepare_v2(database, text, -1, &statement_, &rest_) != SQLITE_OK) {}
  ~OwnStatement() { sqlite3_finalize(statement_); }
  OwnStatement(const OwnStatement&) = delete;
  OwnStatement& operator=(const OwnStatement&) = delete;

  sqlite3_stmt* Get() const { return statement_; }
  bool IsRefused() const { return isRefused_; }
  const char* Rest() const { return rest_; }

 private:
  sqlite3_stmt* statement_ = nullptr;
  const char* rest_ = nullptr;
  bool isRefused_;
};

// SQLite skips a ";" before the statement, which the product refuses.
bool BeginsWithSemicolon(std::string text) {
  for (;;) {
    text.erase(0, std::min(text.find_first_not_of(" \t\r\n\f"), text.size()));
    const bool isLine = text.starts_with("--");
    if (!isLine && !text.starts_with("/*")) return text.starts_with(";");
    const std::size_t end = isLine ? text.find('\n') : text.find("*/", 2);
    text.erase(0, end == std::string::npos ? end : end + (isLine ? 1 : 2));
  }
}

bool HasStatement(sqlite3* database, const char* text) {
  while (*text != '\0') {
    const OwnStatement next(database, text);
    if (next.IsRefused() || next.Get()) return true;
    text = next.Rest();
  }
  return false;
}

void FindWhatSqliteFinds(std::string text) {
  static sqlite3* const database = [] {
    sqlite3* made = nullptr;
    sqlite3_open(":memory:", &made);
    sqlite3_exec(made, test::CreateT(test::kTypesOfSqlite).c_str(), nullptr, nullptr, nullptr);
    return made;
  }();
  text.erase(std::min(text.find('\0'), text.size()));
  const std::int32_t raised = NumberRaised([&] { RequireOneStatement(text); });
  const std::string alone(StatementAlone(text));
  const std::optional<std::string> table = TableOfRows(text);
  const OwnStatement own(database, text.c_str());
  if (own.IsRefused() || BeginsWithSemicolon(text)) return;
  const bool isOne = own.Get() && !HasStatement(database, own.Rest());
  Require(raised == (isOne ? 0 : errors::kCommand), "whether there is one statement in " + Shown(text));
  if (!isOne) return;
  const std::string first(text.c_str(), own.Rest());
  Require(alone == first || alone + ";" == first, "the statement " + Shown(alone) + " in " + Shown(text));
  for (int column = 0; table && column < sqlite3_column_count(own.Get()); ++column) {
    const char* const name = sqlite3_column_table_name(own.Get(), column);
    Require(name && sqlite3_stricmp(name, table->c_str()) == 0, "the table of " + Shown(text) + ": " + Shown(*table));
  }
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  const std::string value = input.Line();
  const std::string number = input.Line();
  ReachNoOtherRow(value, number);
  FindWhatSqliteFinds(value);
  HaveTheSameEffect(input, value);
  return 0;
}
