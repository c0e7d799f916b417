#include "platform/odbc/types.h"

#include <gtest/gtest.h>
#include <sqlext.h>
#include <sqlucode.h>

namespace qmx::test {
namespace {

using Kind = Variant::Kind;

TEST(OdbcTypes, EachSqlTypeHasItsKindOfValue) {
  EXPECT_EQ(KindOfSqlType(SQL_WVARCHAR, "varchar", false), Kind::Text);
  EXPECT_EQ(KindOfSqlType(SQL_LONGVARCHAR, "text", false), Kind::Text);
  EXPECT_EQ(KindOfSqlType(SQL_TYPE_TIMESTAMP, "datetime", false), Kind::DateTime);
  EXPECT_EQ(KindOfSqlType(SQL_TYPE_DATE, "date", false), Kind::DateTime);
  EXPECT_EQ(KindOfSqlType(SQL_SMALLINT, "smallint", false), Kind::Int16);
  EXPECT_EQ(KindOfSqlType(SQL_INTEGER, "integer", false), Kind::Int32);
  EXPECT_EQ(KindOfSqlType(SQL_BIGINT, "bigint", false), Kind::Double);
  EXPECT_EQ(KindOfSqlType(SQL_DECIMAL, "numeric", false), Kind::Double);
  EXPECT_EQ(KindOfSqlType(SQL_DOUBLE, "float8", false), Kind::Double);
  EXPECT_EQ(KindOfSqlType(SQL_BIT, "bit", false), Kind::Boolean);
  EXPECT_EQ(KindOfSqlType(SQL_VARCHAR, "bool", false), Kind::Boolean);
  EXPECT_EQ(KindOfSqlType(SQL_VARBINARY, "bytea", false), Kind::Empty);
}

TEST(OdbcTypes, AnIntegerHasRoomForItsUnsignedValues) {
  EXPECT_EQ(KindOfSqlType(SQL_TINYINT, "tinyint", true), Kind::UInt8);
  EXPECT_EQ(KindOfSqlType(SQL_TINYINT, "tinyint", false), Kind::Int16);
  EXPECT_EQ(KindOfSqlType(SQL_SMALLINT, "smallint", true), Kind::Int32);
  EXPECT_EQ(KindOfSqlType(SQL_INTEGER, "integer", true), Kind::Double);
}

TEST(OdbcTypes, TextsBecomeTheirColumnsKindOrStayAsTheyAre) {
  EXPECT_EQ(FromDriverText("12", Kind::Int16), Variant(static_cast<std::int16_t>(12)));
  EXPECT_EQ(FromDriverText("-12", Kind::Int32), Variant(-12));
  EXPECT_EQ(FromDriverText("40000", Kind::Int16), Variant(40000));
  EXPECT_EQ(FromDriverText("3000000000", Kind::Int32), Variant(3e9));
  EXPECT_EQ(FromDriverText("twelve", Kind::Int32), Variant("twelve"));
  EXPECT_EQ(FromDriverText("t", Kind::Boolean), Variant(true));
  EXPECT_EQ(FromDriverText("0", Kind::Boolean), Variant(false));
  EXPECT_EQ(FromDriverText("maybe", Kind::Boolean), Variant("maybe"));
  EXPECT_EQ(FromDriverText("2026-11-20 14:05:09.000", Kind::DateTime),
            Variant(DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9)));
  EXPECT_EQ(FromDriverText("infinity", Kind::DateTime), Variant("infinity"));
  EXPECT_EQ(FromDriverText("12", Kind::Text), Variant("12"));
}

}  // namespace
}  // namespace qmx::test
