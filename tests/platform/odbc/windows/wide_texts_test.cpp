// A driver of Windows may read narrow texts in the system's code page, so none may reach it. The functions beneath the
// program do what such a driver does with letters that are not in its code page.
#include <sql.h>
#include <sqlext.h>

#include <atomic>

#include "tests/platform/database/record_set_test.h"
#include "tests/platform/odbc/letters.h"

namespace {
std::atomic<int> wideTexts;
std::atomic<int> refusedTexts;
}  // namespace

extern "C" {
SQLRETURN SQL_API __real_SQLBindParameter(SQLHSTMT, SQLUSMALLINT, SQLSMALLINT, SQLSMALLINT, SQLSMALLINT, SQLULEN,
                                          SQLSMALLINT, SQLPOINTER, SQLLEN, SQLLEN*);
SQLRETURN SQL_API __real_SQLGetData(SQLHSTMT, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER, SQLLEN, SQLLEN*);

SQLRETURN SQL_API __wrap_SQLBindParameter(SQLHSTMT statement, SQLUSMALLINT number, SQLSMALLINT direction,
                                          SQLSMALLINT cType, SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits,
                                          SQLPOINTER value, SQLLEN length, SQLLEN* indicator) {
  ++(cType == SQL_C_CHAR ? refusedTexts : wideTexts);
  if (cType == SQL_C_CHAR) return SQL_ERROR;
  return __real_SQLBindParameter(statement, number, direction, cType, sqlType, size, digits, value, length, indicator);
}

SQLRETURN SQL_API __wrap_SQLGetData(SQLHSTMT statement, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER value,
                                    SQLLEN length, SQLLEN* indicator) {
  ++(cType == SQL_C_CHAR ? refusedTexts : wideTexts);
  if (cType == SQL_C_CHAR) return SQL_ERROR;
  return __real_SQLGetData(statement, number, cType, value, length, indicator);
}
}

namespace qmx::test {
namespace {

class WideTexts : public testing::TestWithParam<DriverUnderTest> {
 protected:
  WideTexts() : base(GetParam().make()), session(base->PlainDriver().Open(ConnectionText(base->ConnectionText()))) {
    Run("create table people (code varchar(20) primary key, name varchar(100))");
    const TableDescription people = session->Describe("people");
    insert.table = people.name;
    insert.columns = people.columns;
    insert.into = "insert into people (code,name)";
    wideTexts = refusedTexts = 0;
  }
  ~WideTexts() override { session->Close(); }

  void Run(const std::string& text) {
    const auto statement = session->Prepare(text);
    while (statement->Step()) continue;
  }

  // Adds that many rows with numbers from the next one on, whose names take turns.
  void Expect(int rows, std::vector<Variant>& values) {
    const std::vector<std::string> texts = LettersOfManyScripts();
    for (int row = 0; row < rows; ++row) {
      expected.push_back(texts[expected.size() % texts.size()]);
      values.insert(values.end(), {std::to_string(expected.size()), expected.back()});
    }
  }

  std::unique_ptr<TestDatabase> base;
  std::unique_ptr<DriverSession> session;
  RowInsert insert;
  std::vector<std::string> expected;
};
INSTANTIATE_TEST_SUITE_P(Over, WideTexts, testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "SQLiteOverOdbc" || !driver.name.starts_with("SQLite");
                         })),
                         DriverName);

TEST_P(WideTexts, AloneGoToTheDriverAndComeBack) {
  const auto rows = session->PrepareRows(insert);
  EXPECT_EQ(rows->Most(), GetParam().name == "SQLiteOverOdbc" ? 128 : 1000);
  for (int batch = 0; batch < 3; ++batch) {  // the first one may be a trial
    std::vector<Variant> values;
    Expect(64, values);
    ASSERT_EQ(rows->Add(values), 64);
  }
  std::vector<Variant> row;
  Expect(1, row);
  const auto one = session->Prepare(insert.Text());
  one->Bind(0, row[0]);
  one->Bind(1, row[1]);
  one->Step();

  std::vector<std::string> found(expected.size());
  const auto all = session->Prepare("select code, name from people");
  while (all->Step()) found.at(std::stoul(all->Value(0).ToText()) - 1) = all->Value(1).ToText();
  EXPECT_EQ(found, expected);
  EXPECT_GT(wideTexts, 2 * 193);
  EXPECT_EQ(refusedTexts, 0);
}

}  // namespace
}  // namespace qmx::test
