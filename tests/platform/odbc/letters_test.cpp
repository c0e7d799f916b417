// Letters of any script go both ways wherever a text does: names of tables and columns, values, errors, connection
// texts.
#include "tests/platform/odbc/letters.h"

#include "platform/odbc/connection_string.h"
#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string Quoted(const std::string& name) { return '"' + name + '"'; }

class Letters : public RecordSetTest {
 protected:
  bool IsFile() const { return GetParam().name == "SQLiteOverOdbc"; }

  // SQLite's driver has no wide functions. The driver manager converts the statements in the locale's letters for it.
  const std::string table = IsFile() ? "Städte" : "Städte Ж東";
  const std::string column = IsFile() ? "größe" : "größe Ω京";
};
INSTANTIATE_TEST_SUITE_P(Over, Letters, testing::ValuesIn(DriversUnderTest([](const DriverUnderTest& driver) {
                           return driver.name == "SQLiteOverOdbc" || !driver.name.starts_with("SQLite");
                         })),
                         DriverName);

TEST_P(Letters, AreInNamesAndValuesOfSingleRowsAndOfManyAtOnce) {
  connection.Execute("create table " + Quoted(table) + " (code varchar(40) primary key, " + Quoted(column) +
                     " varchar(100))");
  const std::vector<std::string> texts = LettersOfManyScripts();
  std::vector<std::string> expected;
  {
    const auto records = OpenedTable(table.c_str());
    for (int round = 0; round < 200; ++round) {  // enough for the second batch, which is no trial
      for (const std::string& text : texts) {
        records->AddNew();
        records->Fields("code").Value(text + std::to_string(round));
        records->Fields(column.c_str()).Value(text + text + text);
        records->Update();
        if (round == 199) expected.push_back(text + "199|" + text + text + text);
      }
    }
    records->Close();
  }
  const SqlText last("select * from " + Quoted(table) + " where code like '%199'");
  EXPECT_THAT(Rows(last), testing::UnorderedElementsAreArray(expected));
  EXPECT_THAT(Rows("select count(*) from " + Quoted(table)), ElementsAre("2000"));

  const auto found = Opened(SqlText("select * from " + Quoted(table) + " where code='").Value("Жук7").Append("'"));
  EXPECT_EQ(found->Fields(1).Name(), column);
  EXPECT_EQ(found->Fields(1).Value(), Variant("ЖукЖукЖук"));
  found->Fields(1).Value("東京 🙂");
  found->Update();
  found->Close();
  EXPECT_THAT(Rows(SqlText("select * from " + Quoted(table) + " where code='").Value("Жук7").Append("'")),
              ElementsAre("Жук7|東京 🙂"));
}

TEST_P(Letters, AreInErrors) {
  const Error error = Raised([&] { Opened("select * from " + Quoted("keine " + table)); });
  EXPECT_EQ(error.Number(), -2147217865);
  EXPECT_THAT(error.Description(), HasSubstr("keine " + table));
}

TEST_P(Letters, AreInConnectionTexts) {
  const std::string name = "größe_Жук_東京";
  if (!IsFile()) {
    connection.Execute("create database " + Quoted(name));
    Connection other({&base->GetDriver()}, nullptr);
    other.Open(WithOdbcKeyword(base->ConnectionText(), "Database", name), "", "");
    EXPECT_EQ(other.defaultdatabase(), name);
    other.Close();
    connection.Execute("drop database " + Quoted(name));
    return;
  }
  const std::string text = WithOdbcKeyword(base->ConnectionText(), "Database",
                                           OdbcKeyword(base->ConnectionText(), "Database") + name + ".db");
  for (const char* statement : {"create table towns (town varchar(20))", "insert into towns values ('東京')"}) {
    Connection other({&base->GetDriver()}, nullptr);
    other.Open(text, "", "");
    other.Execute(statement);
  }
  EXPECT_EQ(Raised([&] { Opened("select * from towns"); }).Number(), -2147217865);  // it is another file
}

}  // namespace
}  // namespace qmx::test
