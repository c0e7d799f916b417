// A local table on every database system, against the ERP's rows in SQLite.
#include "tools/qmxadmin/verify/comparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/sqlite/driver.h"
#include "schema/dialect.h"
#include "tests/support/driver_under_test.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Kind = Variant::Kind;

LocalTable Kinds() {
  LocalTable table;
  table.name = "kinds";
  table.columns = {{"code", Kind::Text, 20}, {"line", Kind::Int32},    {"name", Kind::Text, 50},
                   {"rate", Kind::Double},   {"stdt", Kind::DateTime}, {"flag", Kind::Int16}};
  table.key = {"code", "line"};
  return table;
}

class Notes : public DifferenceSink {
 public:
  void Missing(const RowValues& erp) override { notes.push_back("missing " + Key(erp)); }
  void Surplus(const RowValues& local) override { notes.push_back("surplus " + Key(local)); }
  void Different(const RowValues& local, const RowValues& erp, const std::vector<std::size_t>& columns) override {
    std::string note = "different " + Key(local);
    for (const std::size_t column : columns)
      note += " " + Kinds().columns[column].name + " " + local[column].ToText() + "|" + erp[column].ToText();
    notes.push_back(note);
  }
  void Repeated(const RowValues& erp, std::int64_t times) override {
    notes.push_back("repeated " + Key(erp) + " x" + std::to_string(times));
  }
  std::vector<std::string> notes;

 private:
  static std::string Key(const RowValues& row) { return row[0].ToText() + "/" + row[1].ToText(); }
};

class Comparing : public testing::TestWithParam<DriverUnderTest> {
 protected:
  Comparing() {
    local_ = base_->GetDriver().Open(ConnectionText(base_->ConnectionText()));
    erp_ = sqlite_.Open(ConnectionText("Provider=SQLite;Mode=Create;Data Source=" + (folder_ / "erp.db")));
    const LocalTable table = Kinds();
    Run(*local_, DialectOfSystem(local_->System())->CreateTable(table));
    LocalTable keyless = table;
    keyless.key.clear();
    Run(*erp_, SqliteDialect().CreateTable(keyless));
  }
  ~Comparing() override {
    local_->Close();
    erp_->Close();
  }

  static void Run(DriverSession& session, const std::string& text) {
    const auto statement = session.Prepare(text);
    while (statement->Step()) continue;
  }
  static void Add(DriverSession& session, const RowValues& row) {
    const auto statement =
        session.Prepare("insert into kinds (code, line, name, rate, stdt, flag) values (?,?,?,?,?,?)");
    for (std::size_t column = 0; column < row.size(); ++column) statement->Bind(column, row[column]);
    while (statement->Step()) continue;
  }
  static RowValues Row(const std::string& code, std::int32_t line, const std::string& name = "n", double rate = 1) {
    return {code, line, name, rate, DateTime::FromDate(2026, 11, 20), std::int16_t{1}};
  }
  void AddBoth(const RowValues& row) {
    Add(*local_, row);
    Add(*erp_, row);
  }

  std::vector<std::string> Differences(std::optional<DateTime> first = {}) {
    Notes notes;
    rows_ = Compare(Kinds(), *local_, *erp_, first, notes);
    return notes.notes;
  }

  TempFolder folder_;
  SqliteDriver sqlite_;
  std::unique_ptr<TestDatabase> base_ = GetParam().make();
  std::unique_ptr<DriverSession> local_, erp_;
  ComparedRows rows_;
};
INSTANTIATE_TEST_SUITE_P(Over, Comparing, testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "SQLite" || !driver.name.starts_with("SQLite");
                         })),
                         [](const auto& info) { return info.param.name; });

TEST_P(Comparing, FindsNoDifferenceBetweenEqualRows) {
  AddBoth(Row("A", 1));
  AddBoth({"B", std::int32_t{2}, Variant::Null(), Variant::Null(), Variant::Null(), Variant::Null()});
  AddBoth({"Ünï ' \" \\ ; %_", std::int32_t{-1}, "O'Hara \\ 'x' ?", 0.1 + 0.2,
           DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9), std::int16_t{0}});
  AddBoth({"C", std::int32_t{1}, "", -1e-300, DateTime::FromDate(1899, 12, 30), std::int16_t{-5}});
  EXPECT_THAT(Differences(), IsEmpty());
  EXPECT_EQ(rows_.local, 4);
  EXPECT_EQ(rows_.erp, 4);
}

TEST_P(Comparing, ReportsMissingSurplusAndDifferentRows) {
  AddBoth(Row("A", 1));
  Add(*erp_, Row("A", 2));
  Add(*local_, Row("A", 3));
  Add(*local_, Row("B", 1, "here", 1.5));
  Add(*erp_, Row("B", 1, "there", 1.25));
  EXPECT_THAT(Differences(),
              UnorderedElementsAre("missing A/2", "surplus A/3", "different B/1 name here|there rate 1.5|1.25"));
  EXPECT_EQ(rows_.local, 3);
  EXPECT_EQ(rows_.erp, 3);
}

TEST_P(Comparing, FindsTheSmallestDifferenceBetweenValues) {
  Add(*local_, Row("A", 1, "x "));
  Add(*erp_, Row("A", 1, "x"));
  Add(*local_, Row("B", 1, "n", 0.3));
  Add(*erp_, Row("B", 1, "n", 0.1 + 0.2));
  Add(*local_, {"C", std::int32_t{1}, "", 1.0, DateTime::FromDate(2026, 11, 20), std::int16_t{1}});
  Add(*erp_, {"C", std::int32_t{1}, Variant::Null(), 1.0, DateTime::FromDate(2026, 11, 20).PlusTime(0, 0, 1),
              std::int16_t{1}});
  EXPECT_THAT(Differences(), UnorderedElementsAre("different A/1 name x |x", HasSubstr("different B/1 rate 0.3|0.3"),
                                                  "different C/1 name | stdt 2026-11-20|2026-11-20 00:00:01"));
}

TEST_P(Comparing, KeepsLettersAndBlanksOfKeysApart) {
  AddBoth(Row("a", 1));
  AddBoth(Row("A", 1));
  AddBoth(Row("A ", 1));
  Add(*local_, Row("b", 1));
  Add(*erp_, Row("B", 1));
  EXPECT_THAT(Differences(), UnorderedElementsAre("surplus b/1", "missing B/1"));
}

TEST_P(Comparing, ReportsAKeyThatTheErpListsSeveralTimes) {
  Add(*local_, Row("A", 1, "last"));
  Add(*erp_, Row("A", 1, "first"));
  Add(*erp_, Row("A", 1, "last"));
  EXPECT_THAT(Differences(), ElementsAre("repeated A/1 x2"));
  EXPECT_EQ(rows_.erp, 2);
}

TEST_P(Comparing, ReportsARowWithoutAKeyAsMissing) {
  Add(*erp_, {Variant::Null(), std::int32_t{1}, "n", 1.0, Variant::Null(), Variant::Null()});
  EXPECT_THAT(Differences(), ElementsAre("missing /1"));
}

TEST_P(Comparing, DoesNotCountRowsBeforeTheListedOnesAsSurplus) {
  Add(*local_, {"A", std::int32_t{1}, "n", 1.0, DateTime::FromDate(2026, 11, 19), std::int16_t{1}});
  Add(*local_, {"A", std::int32_t{2}, "n", 1.0, DateTime::FromDate(2026, 11, 20), std::int16_t{1}});
  EXPECT_THAT(Differences(DateTime::FromDate(2026, 11, 20)), ElementsAre("surplus A/2"));
  EXPECT_EQ(rows_.older, 1);
}

// More rows than are read at a time, with the same first part of the key across the seams.
TEST_P(Comparing, FindsOneRowAmongMany) {
  local_->Begin();
  erp_->Begin();
  const auto fill = [&](DriverSession& session) {
    Run(session,
        "insert into kinds (code, line, name) with recursive "
        "numbers (n) as (select 1 union all select n + 1 from numbers where n < 350) "
        "select p, n, 'x' from numbers, (select 'A' as p union all select 'B' union all select 'C') as codes");
  };
  fill(*local_);
  fill(*erp_);
  Run(*local_, "delete from kinds where code = 'B' and line = 101");
  Run(*erp_, "delete from kinds where code = 'C' and line = 200");
  local_->Commit();
  erp_->Commit();
  EXPECT_THAT(Differences(), UnorderedElementsAre("missing B/101", "surplus C/200"));
  EXPECT_EQ(rows_.local, 1049);
  EXPECT_EQ(rows_.erp, 1049);
}

// As an older release stored them, the moments of a key follow each other as texts do.
TEST(AComparison, ReadsEveryRowOfAFileThatHoldsMidnightsOfAnOlderRelease) {
  const auto days = std::find_if(LocalTables().begin(), LocalTables().end(),
                                 [](const LocalTable& table) { return table.name == "tcccp030"; });
  ASSERT_NE(days, LocalTables().end());
  TempFolder folder;
  SqliteDriver sqlite;
  const auto fill = [&](const char* file, const std::string& midnight) {
    std::unique_ptr<DriverSession> session =
        sqlite.Open(ConnectionText("Provider=SQLite;Mode=Create;Data Source=" + (folder / file)));
    for (const std::string& statement :
         {SqliteDialect().CreateTable(*days),
          "with recursive numbers (n) as (select 1 union all select n + 1 from numbers where n < 1050) insert into "
          "tcccp030 (ccal, ract, stdt, sttm) select 'DAY', 'WRK', '2026-11-20" +
              midnight + "', n from numbers"}) {
      const auto running = session->Prepare(statement);
      while (running->Step()) continue;
    }
    return session;
  };
  const auto local = fill("local.db", "");
  const auto erp = fill("erp.db", " 00:00:00");
  Notes notes;
  const ComparedRows rows = Compare(*days, *local, *erp, {}, notes);
  EXPECT_EQ(rows.local, 1050);
  EXPECT_EQ(rows.erp, 1050);
  EXPECT_THAT(notes.notes, IsEmpty());
  local->Close();
  erp->Close();
}

TEST(AComparison, RefusesALocalTableThatLacksAColumnOrTheKey) {
  const TableDescription good = {
      "KINDS", {{"Line"}, {"code"}, {"name"}, {"rate"}, {"stdt"}, {"flag"}, {"more"}}, {0, 1}};
  RequireComparable(Kinds(), good);
  TableDescription narrow = good;
  narrow.columns[3].name = "price";
  EXPECT_THAT(Raised([&] { RequireComparable(Kinds(), narrow); }).Description(),
              HasSubstr("The local table kinds has no column rate, so its rows cannot be compared."));
  TableDescription keyless = good;
  keyless.key = {1};
  EXPECT_THAT(Raised([&] { RequireComparable(Kinds(), keyless); }).Description(),
              HasSubstr("does not have the key code, line"));
}

}  // namespace
}  // namespace qmx::test
