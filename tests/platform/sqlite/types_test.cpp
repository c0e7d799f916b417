#include "platform/sqlite/types.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using Kind = Variant::Kind;

TEST(SqliteTypes, DeclaredTypesSayWhatAColumnHolds) {
  EXPECT_EQ(KindOfDeclaredType("datetime"), Kind::DateTime);
  EXPECT_EQ(KindOfDeclaredType("TIMESTAMP"), Kind::DateTime);
  EXPECT_EQ(KindOfDeclaredType("date"), Kind::DateTime);
  EXPECT_EQ(KindOfDeclaredType("tinyint"), Kind::UInt8);
  EXPECT_EQ(KindOfDeclaredType("SMALLINT"), Kind::Int16);
  EXPECT_EQ(KindOfDeclaredType("integer"), Kind::Int32);
  EXPECT_EQ(KindOfDeclaredType("int(11)"), Kind::Int32);
  EXPECT_EQ(KindOfDeclaredType("bigint"), Kind::Double);
  EXPECT_EQ(KindOfDeclaredType("double precision"), Kind::Double);
  EXPECT_EQ(KindOfDeclaredType("real"), Kind::Double);
  EXPECT_EQ(KindOfDeclaredType("numeric(10,2)"), Kind::Double);
  EXPECT_EQ(KindOfDeclaredType("decimal"), Kind::Double);
  EXPECT_EQ(KindOfDeclaredType("boolean"), Kind::Boolean);
  EXPECT_EQ(KindOfDeclaredType("varchar(100)"), Kind::Text);
  EXPECT_EQ(KindOfDeclaredType("text"), Kind::Text);
  EXPECT_EQ(KindOfDeclaredType(""), Kind::Empty);
  EXPECT_EQ(KindOfDeclaredType("blob"), Kind::Empty);
}

class SqliteValues : public testing::Test {
 protected:
  SqliteValues() : connection({&driver}, nullptr) {
    connection.Open("Provider=SQLite;Mode=Create;Data Source=" + folder / "local.db", "", "");
    connection.Execute(
        "create table v (code varchar(9) primary key, born datetime, n integer, small smallint, tiny tinyint, big "
        "bigint, d double precision, b boolean, any)");
  }

  Variant Stored(const std::string& column, const std::string& literal) {
    connection.Execute("delete from v");
    connection.Execute("insert into v (code, " + column + ") values ('k', " + literal + ")");
    Recordset records(nullptr);
    records.Open("select * from v", connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.Fields(std::string_view(column)).Value();
  }

  TempFolder folder;
  SqliteDriver driver;
  Connection connection;
};

TEST_F(SqliteValues, AreReadInTheirColumnsType) {
  EXPECT_EQ(Stored("n", "5"), Variant(5));
  EXPECT_EQ(Stored("small", "5"), Variant(std::int16_t{5}));
  EXPECT_EQ(Stored("tiny", "5"), Variant(std::uint8_t{5}));
  EXPECT_EQ(Stored("big", "5"), Variant(5.0));
  EXPECT_EQ(Stored("d", "5"), Variant(5.0));
  EXPECT_EQ(Stored("b", "1"), Variant(true));
  EXPECT_EQ(Stored("born", "'2026-11-20 14:05:09'"), Variant(DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9)));
  EXPECT_TRUE(Stored("n", "null").IsNull());
}

TEST_F(SqliteValues, OfAnotherFormThanTheirColumnsAreReadAsTheyAre) {
  EXPECT_EQ(Stored("born", "'next week'"), Variant("next week"));
  EXPECT_EQ(Stored("born", "5"), Variant(5));
  EXPECT_EQ(Stored("n", "'many'"), Variant("many"));
  EXPECT_EQ(Stored("n", "1.5"), Variant(1.5));
  EXPECT_EQ(Stored("n", "3000000000"), Variant(3e9));
  EXPECT_EQ(Stored("small", "70000"), Variant(70000));
  EXPECT_EQ(Stored("tiny", "-1"), Variant(-1));
}

TEST_F(SqliteValues, OfColumnsWithoutATypeAreReadAsTheyAre) {
  EXPECT_EQ(Stored("any", "5"), Variant(5));
  EXPECT_EQ(Stored("any", "1.5"), Variant(1.5));
  EXPECT_EQ(Stored("any", "'2026-11-20'"), Variant("2026-11-20"));
  EXPECT_EQ(Stored("any", "x'414243'"), Variant("ABC"));
}

TEST_F(SqliteValues, OfDatesAreStoredInTheirCanonicalText) {
  Recordset records(nullptr);
  records.Open("v", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  records.Fields("code") = "day";
  records.Fields("born") = DateTime::FromDate(2026, 7, 4);
  records.AddNew();
  records.Fields("code") = "minute";
  records.Fields("born") = DateTime::FromDate(2026, 7, 4).PlusTime(8, 0, 0);
  records.Close();
  records.Open("select born||'' , typeof(born) from v order by code", connection, kCursorKeyset, kLockOptimistic,
               kCommandText);
  EXPECT_EQ(records.Fields(0).Value(), Variant("2026-07-04 00:00:00"));
  EXPECT_EQ(records.Fields(1).Value(), Variant("text"));
  records.MoveNext();
  EXPECT_EQ(records.Fields(0).Value(), Variant("2026-07-04 08:00:00"));
}

TEST_F(SqliteValues, WithANulCharacterComeBackWhole) {
  const std::string text("a\0b", 3);
  Recordset records(nullptr);
  records.Open("v", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  records.Fields("code") = text;
  records.Close();
  records.Open("select * from v", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(records.Fields("code").Value(), Variant(text));
}

TEST_F(SqliteValues, BooleansAreStoredAsOneAndZero) {
  Recordset records(nullptr);
  records.Open("v", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  records.Fields("code") = "k";
  records.Fields("b") = true;
  records.Fields("n") = true;
  records.Close();
  records.Open("select b+0, n from v", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(records.Fields(0).Value(), Variant(1));
  EXPECT_EQ(records.Fields(1).Value(), Variant(-1));
}

}  // namespace
}  // namespace qmx::test
