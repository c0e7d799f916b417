#include "platform/odbc/errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qmx::test {
namespace {

std::int32_t NumberOf(const char* state, SQLINTEGER native, const char* text = "") {
  return OdbcError({{state, native, text}}).Number();
}

TEST(OdbcErrors, EveryRecordIsShownWithSqlstateAndNativeCode) {
  const Error error = OdbcError({{"23505", 7, "duplicate key"}, {"01000", 0, "rolled back"}});
  EXPECT_EQ(error.Number(), -2147217873);
  EXPECT_EQ(error.Source(), "ODBC");
  EXPECT_EQ(error.Description(),
            "duplicate key (SQLSTATE 23505, native code 7) / rolled back (SQLSTATE 01000, native code 0).");
  EXPECT_THAT(error.Details(),
              testing::ElementsAre(testing::Pair("SQLSTATE", "23505"), testing::Pair("native code", "7")));
}

TEST(OdbcErrors, TheFirstRecordWithAMeaningDecidesTheNumber) {
  EXPECT_EQ(OdbcError({{"01S00", 0, "a remark"}, {"28000", 0, "who are you"}}).Number(), -2147217843);
}

TEST(OdbcErrors, AdviceFollowsTheMessage) {
  EXPECT_EQ(
      OdbcError({{"42501", 1, "permission denied for table tsmdm030"}}).Description(),
      "permission denied for table tsmdm030 (SQLSTATE 42501, native code 1). Grant the missing privileges to the user "
      "(docs/databases.md lists them).");
}

TEST(OdbcErrors, AFailureWithoutRecordsIsStillAnError) {
  EXPECT_EQ(OdbcError(std::vector<Diagnostic>()).Number(), -2147467259);
}

TEST(OdbcErrors, SqlstatesHaveTheClassicNumbers) {
  EXPECT_EQ(NumberOf("28P01", 0), -2147217843);
  EXPECT_EQ(NumberOf("08S01", 0), -2147467259);
  EXPECT_EQ(NumberOf("42S02", 0), -2147217865);
  EXPECT_EQ(NumberOf("42P01", 1), -2147217865);
  EXPECT_EQ(NumberOf("42601", 1), -2147217900);
  EXPECT_EQ(NumberOf("42703", 1), -2147217900);
  EXPECT_EQ(NumberOf("23000", 1062), -2147217873);
  EXPECT_EQ(NumberOf("57014", 1), -2147217871);
  EXPECT_EQ(NumberOf("HYT00", 0), -2147217871);
  EXPECT_EQ(NumberOf("22001", 1), -2147217900);
  EXPECT_EQ(NumberOf("22003", 1), 6);
  EXPECT_EQ(NumberOf("22007", 1), 13);
  EXPECT_EQ(NumberOf("53100", 1), 61);
  EXPECT_EQ(NumberOf("25006", 1), 70);
  EXPECT_EQ(NumberOf("HY001", 0), 7);
  EXPECT_EQ(NumberOf("IM002", 0), -2147467259);
  EXPECT_EQ(NumberOf("XX000", 0), -2147467259);
}

TEST(OdbcErrors, TheNativeCodeOrTheTextDecidesIfTheSqlstateDoesNot) {
  EXPECT_EQ(NumberOf("HY000", 1205), -2147217871);
  EXPECT_EQ(NumberOf("70100", 1969), -2147217871);
  EXPECT_EQ(NumberOf("42000", 1142), 70);
  EXPECT_EQ(NumberOf("HY000", 1114), 61);
  EXPECT_EQ(NumberOf("HY000", 1290), 70);
  EXPECT_EQ(NumberOf("42000", 1064), -2147217900);
  EXPECT_EQ(NumberOf("HY000", 1, "no such table: nobody (1)"), -2147217865);
  EXPECT_EQ(NumberOf("HY000", 19, "UNIQUE constraint failed: people.code (19)"), -2147217873);
  EXPECT_EQ(NumberOf("HY000", 5, "database is locked (5)"), -2147217871);
  EXPECT_EQ(NumberOf("08001", 101, "FATAL: password authentication failed for user \"x\""), -2147217843);
}

}  // namespace
}  // namespace qmx::test
