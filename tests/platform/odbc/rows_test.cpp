// Many rows at a time, in the form that each database system takes fastest: the tables must hold what single rows
// leave.
#include <algorithm>

#include "platform/odbc/array_rows.h"
#include "platform/odbc/connection.h"
#include "platform/odbc/unnest_rows.h"
#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Values = std::vector<Variant>;

// A column's type and the values that are tried, one row after the other and from the beginning again.
struct TriedColumn {
  std::string type;
  Values values;
};

const Values kTexts = {"",
                       " ",
                       "NULL",
                       "null",
                       "it's",
                       "\"quoted\"",
                       "\\",
                       "a\\b\\\"c",
                       "{}",
                       "{a,b}",
                       "}",
                       ",",
                       "a,b",
                       "?",
                       "?::int",
                       "two\nlines\r\n\tand a tab",
                       "é€🙂",
                       "trail  ",
                       "\x01\x7f!",
                       "--no /* */",
                       "2026-11-20",
                       "\xF4\x8F\xBF\xBF",
                       Variant::Null()};
const Values kMoments = {DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9), DateTime::FromDate(2026, 2, 1),
                         DateTime::FromDate(1000, 1, 1), Variant::Null(),
                         DateTime::FromDate(9999, 12, 31).PlusTime(23, 59, 59)};
const Values kDays = {DateTime::FromDate(2026, 11, 20), Variant::Null(), DateTime::FromDate(1899, 12, 30)};
const Values kSmall = {std::int16_t{0}, std::int16_t{-32768}, std::int16_t{32767}, Variant::Null()};
const Values kWhole = {0, 7, -2147483647 - 1, 2147483647, Variant::Null()};
const Values kDoubles = {0.0,     -0.0, 0.1,           0.1 + 0.2, 1e300, 2.5e-300,       123456789012.0,
                         1.0 / 3, -1e9, 1234567.12345, 1e15,      1e17,  Variant::Null()};
const Values kDecimals = {1.005, 2.675, -3.5, 1234567.89, 0.1, 0.0, Variant::Null()};
const Values kFlags = {true, false, Variant::Null()};

Values Texts(std::initializer_list<const char*> texts) {
  Values values(texts.begin(), texts.end());
  values.push_back(Variant::Null());
  return values;
}

class RowsTogether : public testing::TestWithParam<DriverUnderTest> {
 protected:
  RowsTogether() : base(GetParam().make()), session(base->PlainDriver().Open(ConnectionText(base->ConnectionText()))) {}
  ~RowsTogether() override { session->Close(); }

  bool IsPostgresql() const { return GetParam().name == "PostgreSQL"; }
  bool IsMariaDb() const { return GetParam().name == "MariaDB"; }

  void Run(const std::string& text) {
    const auto statement = session->Prepare(text);
    while (statement->Step()) continue;
  }

  std::vector<std::string> Ask(const std::string& query) {
    const auto statement = session->Prepare(query);
    std::vector<std::string> rows;
    while (statement->Step()) {
      std::string row;
      for (std::size_t column = 0; column < statement->Columns().size(); ++column) {
        const Variant value = statement->Value(column);
        row += (column > 0 ? "|" : "") + (value.IsNull() ? "null" : value.ToText());
      }
      rows.push_back(row);
    }
    return rows;
  }

  // Rows with all of a table's columns but those that the database fills in, whose names begin with "own".
  RowInsert Insert(const std::string& table) {
    RowInsert insert;
    const TableDescription description = session->Describe(table);
    insert.table = description.name;
    std::string columns;
    for (const ColumnDescription& column : description.columns) {
      if (column.name.starts_with("own")) continue;
      insert.columns.push_back(column);
      columns += (columns.empty() ? "" : ",") + session->QuoteIdentifier(column.name);
    }
    insert.into = "insert into " + session->QuoteIdentifier(table) + " (" + columns + ")";
    return insert;
  }

  void AddAlone(const RowInsert& insert, std::span<const Variant> values) {
    const auto statement = session->Prepare(insert.Text());
    for (; !values.empty(); values = values.subspan(insert.columns.size())) {
      for (std::size_t column = 0; column < insert.columns.size(); ++column) statement->Bind(column, values[column]);
      while (statement->Step()) continue;
      statement->Reset();
    }
  }

  // Returns how many rows went out each time.
  static std::vector<std::size_t> AddTogether(DriverRows& rows, const RowInsert& insert,
                                              std::span<const Variant> values) {
    std::vector<std::size_t> counts;
    while (!values.empty()) {
      counts.push_back(rows.Add(values));
      values = values.subspan(counts.back() * insert.columns.size());
    }
    return counts;
  }

  // Tables "alone" and "together" of those columns, with a number that the database gives and a column with a default.
  void CreateBoth(const std::vector<TriedColumn>& columns) {
    std::string rest;
    char name = 'a';
    for (const TriedColumn& column : columns) rest += std::string(", ") + name++ + " " + column.type;
    const std::string number = IsPostgresql() ? "integer generated always as identity primary key"
                               : IsMariaDb()  ? "integer not null auto_increment primary key"
                                              : "integer primary key";
    for (const char* table : {"alone", "together"}) {
      Run(std::string("create table ") + table + " (own_number " + number + ", own_default integer default 7" + rest +
          ")");
    }
  }

  static Values RowsOf(const std::vector<TriedColumn>& columns, const RowInsert& insert, std::size_t rows) {
    Values values;
    for (std::size_t row = 0; row < rows; ++row) {
      for (std::size_t column = 0; column < columns.size(); ++column) {
        const Values& tried = columns[column].values;
        const Variant::Kind type = insert.columns[column].type;
        const Variant& value = tried[row % tried.size()];
        values.push_back(type == Variant::Kind::Empty ? value : value.ConvertedTo(type));
      }
    }
    return values;
  }

  void ExpectTheSameInBoth(const char* rows) {
    EXPECT_THAT(Ask("select count(*), sum(own_default) from together"),
                ElementsAre(rows + std::string("|") + std::to_string(7 * std::stoi(rows))));
    for (const auto& [one, other] : {std::pair("alone", "together"), std::pair("together", "alone")}) {
      const auto selectAll = [&](const char* table) {
        return std::string("select ") + (IsPostgresql() ? "t::text" : "*") + " from " + table + " t";
      };
      EXPECT_THAT(Ask(selectAll(one) + " except " + selectAll(other) + (IsPostgresql() ? " limit 3" : "")),
                  ElementsAre());
    }
  }

  void ExpectTheSameBothWays(const std::vector<TriedColumn>& columns, bool areFast) {
    CreateBoth(columns);
    const RowInsert alone = Insert("alone");
    const Values values = RowsOf(columns, alone, 300);
    AddAlone(alone, values);
    const RowInsert together = Insert("together");
    const auto rows = session->PrepareRows(together);
    EXPECT_EQ(rows->Most() >= 1000, areFast);
    AddTogether(*rows, together, values);
    ExpectTheSameInBoth("300");
  }

  std::unique_ptr<TestDatabase> base;
  std::unique_ptr<DriverSession> session;
};
INSTANTIATE_TEST_SUITE_P(Over, RowsTogether, testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "SQLiteOverOdbc" || !driver.name.starts_with("SQLite");
                         })),
                         DriverName);

class RowsTogetherOnAServer : public RowsTogether {
 protected:
  // A thousand rows of which one is bad, under a number of 1 to 1000.
  Values Thousand(std::size_t bad, const Values& badRow) {
    Values values;
    for (std::size_t row = 1; row <= 1000; ++row) {
      const Values good = {"row " + std::to_string(row), "a name", 1.5};
      const Values& added = row == bad ? badRow : good;
      values.insert(values.end(), added.begin(), added.end());
    }
    return values;
  }
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RowsTogetherOnAServer);
INSTANTIATE_TEST_SUITE_P(Over, RowsTogetherOnAServer, testing::ValuesIn(ServersUnderTest()), DriverName);

TEST_P(RowsTogether, HaveTheSameResultAsSingleRows) {
  ExpectTheSameBothWays({{"varchar(60)", kTexts},
                         {GetParam().longTextType, kTexts},
                         {"char(30)", kTexts},
                         {GetParam().dateTimeType, kMoments},
                         {"date", kDays},
                         {"smallint", kSmall},
                         {"integer", kWhole},
                         {"bigint", {0.0, 5e9, -123456789012.0, Variant::Null()}},
                         {"double precision", kDoubles},
                         {"numeric(9,2)", kDecimals},
                         {"boolean", kFlags}},
                        GetParam().name != "SQLiteOverOdbc");
}

TEST_P(RowsTogetherOnAServer, HaveTheSameResultInColumnsOfTheServersOwnTypes) {
  if (IsPostgresql()) {
    Run("create schema \"Odd Names\"");
    Run("create type \"Odd Names\".\"a mood\" as enum ('sad', 'very happy', 'it''s {odd}')");
    Run("create domain short_text as varchar(12) check (value <> 'never')");
    ExpectTheSameBothWays({{"\"Odd Names\".\"a mood\"", Texts({"sad", "very happy", "it's {odd}"})},
                           {"short_text", Texts({"", "short"})},
                           {"bytea", Texts({"\\x00ff10", "plain", ""})},
                           {"numeric", kDecimals},
                           {"real", {0.1, 2.5, Variant::Null()}},
                           {"timestamptz", kMoments},
                           {"time", Texts({"14:05:09", "00:00:00"})},
                           {"uuid", Texts({"a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11"})},
                           {"json", Texts({"{\"a\": [1, \"two\\n\"]}", "null"})},
                           {"\"char\"", Texts({"x", ""})},
                           {"bit(3)", Texts({"101"})},
                           {"point", Texts({"(1,2)"})}},
                          true);
  } else {
    ExpectTheSameBothWays({{"enum('sad','very happy')", Texts({"sad", "very happy"})},
                           {"set('a','b')", Texts({"a,b", ""})},
                           {"tinyint unsigned", {std::uint8_t{0}, std::uint8_t{255}, Variant::Null()}},
                           {"integer unsigned", {0.0, 4294967295.0, Variant::Null()}},
                           {"float", {0.1, 2.5, Variant::Null()}},
                           {"json", Texts({"{\"a\": [1, \"two\\n\"]}", "null"})},
                           {"varchar(60) character set latin1", Texts({"", "é", "\\"})},
                           {"mediumtext", kTexts}},
                          true);
  }
}

TEST_P(RowsTogetherOnAServer, UseValuesIfAColumnsTypeIsInDoubt) {
  if (IsPostgresql()) {
    ExpectTheSameBothWays({{"integer[]", Texts({"{1,2}", "{}"})}, {"text", kTexts}}, false);
    Run("drop table alone");
    Run("drop table together");
    ExpectTheSameBothWays({{"box", Texts({"(1,2),(3,4)"})}, {"text", kTexts}}, false);
  } else {
    ExpectTheSameBothWays({{"varbinary(60)", kTexts}, {"time", Texts({"14:05:09"})}, {"text", kTexts}}, false);
  }
}

TEST_P(RowsTogetherOnAServer, UseValuesIfTheConnectionsTextsAreNotUtf8) {
  Run("create table people (name varchar(20))");
  const RowInsert insert = Insert("people");
  if (IsPostgresql()) {
    Run("set client_encoding to 'LATIN1'");
    EXPECT_EQ(session->PrepareRows(insert)->Most(), 128);
    Run("set client_encoding to 'UTF8'");
  } else {
    const auto latin = base->PlainDriver().Open(ConnectionText(base->ConnectionText() + ";CHARSET=latin1"));
    const Values values = {"é", "è"};
    EXPECT_EQ(latin->PrepareRows(insert)->Add(values), 2);
    EXPECT_THAT(Ask("select name from people"), testing::UnorderedElementsAre("é", "è"));
    EXPECT_EQ(latin->PrepareRows(insert)->Most(), 128);
    latin->Close();
  }
}

TEST_P(RowsTogetherOnAServer, KeepTheirOrder) {
  Run(IsPostgresql() ? "create table people (own_number serial, floor integer)"
                     : "create table people (own_number integer auto_increment primary key, floor integer)");
  const RowInsert insert = Insert("people");
  const auto rows = session->PrepareRows(insert);
  Values values;
  for (int row = 1; row <= 3000; ++row) values.push_back(row);
  EXPECT_THAT(AddTogether(*rows, insert, std::span(values).first(1000)), ElementsAre(1000));
  EXPECT_THAT(AddTogether(*rows, insert, std::span(values).subspan(1000)), ElementsAre(2000));
  std::vector<std::string> inOrder;
  for (const Variant& value : values) inOrder.push_back(value.ToText());
  EXPECT_EQ(Ask("select floor from people order by own_number"), inOrder);
}

TEST_P(RowsTogetherOnAServer, AreOneStatementForTheServer) {
  Run("create table people (code varchar(20) primary key, floor integer)");
  if (IsPostgresql()) {
    Run("create table statements (one integer)");
    Run("create function count_one() returns trigger language plpgsql as"
        " 'begin insert into statements values (1); return null; end'");
    Run("create trigger counting after insert on people for each statement execute function count_one()");
  }
  const auto count = [&] {
    return std::stoi(Ask(IsPostgresql() ? "select count(*) from statements"
                                        : "select variable_value from information_schema.session_status"
                                          " where variable_name = 'COM_INSERT'")[0]);
  };
  const RowInsert insert = Insert("people");
  const auto rows = session->PrepareRows(insert);
  const int before = count();
  Values values;
  for (int row = 1; row <= 5000; ++row) values.insert(values.end(), {"person " + std::to_string(row), 1});
  for (std::size_t first = 0; first < 5; ++first) rows->Add(std::span(values).subspan(first * 2000, 2000));
  EXPECT_EQ(count() - before, 5);
  EXPECT_THAT(Ask("select count(*) from people"), ElementsAre("5000"));
}

TEST_P(RowsTogetherOnAServer, AreAddedAllOrNone) {
  Run("create table people (code varchar(20) not null primary key, name varchar(10) not null, share numeric(5,2))");
  Run("insert into people values ('Ann', 'Ann', null)");
  const std::vector<Values> badRows = {{"Ann", "another", 1.0},
                                       {"row 0", "a name that is too long", 1.0},
                                       {"row 0", Variant::Null(), 1.0},
                                       {"row 0", "a name", 1000.0},
                                       {"row 0", "a\xC3(b", 1.0}};
  const RowInsert insert = Insert("people");
  for (const bool isTried : {false, true}) {
    const auto rows = session->PrepareRows(insert);
    if (isTried) rows->Add(Thousand(0, {}));
    const std::string expected = isTried ? "1001" : "1";
    for (const std::size_t place : {1, 500, 1000}) {
      for (const Values& badRow : badRows) {
        Values values = Thousand(place, badRow);
        for (std::size_t row = 0; row < 1000; ++row) {
          if (row + 1 != place) values[row * 3] = "again " + std::to_string(row);
        }
        Raised([&] { rows->Add(values); });
        EXPECT_THAT(Ask("select count(*) from people"), ElementsAre(expected));
      }
    }
  }
  Run("delete from people where code like 'row%'");
  AddTogether(*session->PrepareRows(insert), insert, Thousand(0, {}));  // the connection is as good as before
  EXPECT_THAT(Ask("select count(*) from people"), ElementsAre("1001"));
}

TEST_P(RowsTogetherOnAServer, WithLongTextsAreWhole) {
  Run(std::string("create table letters (code integer, body ") + (IsPostgresql() ? "text" : "longtext") + ")");
  const std::string longText = [] {
    std::string text;
    while (text.size() < 3'000'000) text += "a \"long\" \\ {letter}, é€🙂\n";
    return text;
  }();
  Values values;
  for (int row = 0; row < 12; ++row) values.insert(values.end(), {row, row == 7 ? longText : "short"});
  const RowInsert insert = Insert("letters");
  AddTogether(*session->PrepareRows(insert), insert, values);
  EXPECT_THAT(Ask("select count(*), max(code) from letters"), ElementsAre("12|11"));
  const std::vector<std::string> stored = Ask("select body from letters where code = 7");
  ASSERT_EQ(stored.size(), 1);
  EXPECT_TRUE(stored[0] == longText);
}

class RowsTogetherOnMariaDb : public RowsTogetherOnAServer {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RowsTogetherOnMariaDb);
INSTANTIATE_TEST_SUITE_P(Over, RowsTogetherOnMariaDb,
                         testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "MariaDB";
                         })),
                         DriverName);

TEST_P(RowsTogetherOnMariaDb, MakeNoArrayWiderThanMemoryAllows) {
  Run("create table letters (code integer, body longtext)");
  const std::string longText(100'000, 'x');
  Values values;
  for (int row = 0; row < 1000; ++row) values.insert(values.end(), {row, row == 500 ? longText : "short"});
  const RowInsert insert = Insert("letters");
  const auto counts = AddTogether(*session->PrepareRows(insert), insert, values);
  EXPECT_THAT(counts, ElementsAre(500, 41, 459));  // a hundred thousand bytes for each of the rows around the long one
  EXPECT_THAT(Ask("select count(*), max(length(body)) from letters"), ElementsAre("1000|100000"));
}

TEST_P(RowsTogetherOnMariaDb, AreInsertedOneByOneIntoATableThatCannotRollBack) {
  for (const char* engine : {"myisam", "aria", "memory"}) {
    Run(std::string("create table people (code varchar(20) primary key) engine=") + engine);
    const RowInsert insert = Insert("people");
    const auto rows = session->PrepareRows(insert);
    EXPECT_EQ(rows->Most(), 1) << engine;
    const Values values = {"A", "B", "C"};
    EXPECT_THAT(AddTogether(*rows, insert, values), ElementsAre(1, 1, 1));
    EXPECT_THAT(Ask("select code from people order by code"), ElementsAre("A", "B", "C"));
    Run("drop table people");
  }
}

TEST_P(RowsTogetherOnMariaDb, UseValuesOnceTheServerDidNotTakeAnArrayAsOneInsert) {
  Run("create table people (code varchar(20) primary key, name varchar(20) not null)");
  RowInsert insert = Insert("people");
  insert.into = "replace into people (code,name)";  // which it does not count as one
  OdbcConnection connection(base->ConnectionText());
  const auto rows = RowsByArrays(connection, insert, RowsInValues(*session, insert));
  const Values bad = {"A", "Ann", "B", Variant::Null()};
  EXPECT_EQ(rows->Most(), 1000);
  EXPECT_EQ(Raised([&] { rows->Add(bad); }).Number(), -2147217873);
  EXPECT_THAT(Ask("select * from people"), ElementsAre());  // taken back
  const Values good = {"A", "Ann", "B", "Bob", "C", "Cid"};
  EXPECT_EQ(rows->Add(good), 3);
  EXPECT_THAT(Ask("select code from people order by code"), ElementsAre("A", "B", "C"));
  EXPECT_EQ(rows->Most(), 128);
  EXPECT_EQ(rows->Add(good), 2);  // by halves
}

std::string InArray(const Variant& value) {
  std::string array;
  AppendToArray(value, array);
  return array;
}

TEST(RowsInArrays, AreWrittenAsTheServerReadsThem) {
  EXPECT_EQ(InArray(Variant::Null()), "NULL,");
  EXPECT_EQ(InArray("NULL"), R"("NULL",)");
  EXPECT_EQ(InArray(""), R"("",)");
  EXPECT_EQ(InArray(R"(a\b"c\\)"), R"("a\\b\"c\\\\",)");
  EXPECT_EQ(InArray("{a,'b'}\n"), "\"{a,'b'}\n\",");
  EXPECT_EQ(InArray("é€🙂"), "\"é€🙂\",");
  EXPECT_EQ(InArray(true), "1,");
  EXPECT_EQ(InArray(false), "0,");
  EXPECT_EQ(InArray(std::uint8_t{255}), "255,");
  EXPECT_EQ(InArray(std::int16_t{-32768}), "-32768,");
  EXPECT_EQ(InArray(-2147483647), "-2147483647,");
  EXPECT_EQ(InArray(0.1), "0.10000000000000001,");
  EXPECT_EQ(InArray(1e300), "1.0000000000000001e+300,");
  EXPECT_EQ(InArray(-0.0), "-0,");
  EXPECT_EQ(InArray(DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9)), "\"2026-11-20 14:05:09\",");
}

}  // namespace
}  // namespace qmx::test
