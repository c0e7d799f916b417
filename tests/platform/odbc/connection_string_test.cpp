#include "platform/odbc/connection_string.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

TEST(OdbcConnectionString, AKeywordIsReplacedWhereItStands) {
  EXPECT_EQ(WithOdbcKeyword("Driver=X;Database=old;UID=u", "Database", "new"), "Driver=X;Database=new;UID=u");
  EXPECT_EQ(WithOdbcKeyword("DRIVER=X; DATABASE = old", "Database", "new"), "DRIVER=X; DATABASE =new");
}

TEST(OdbcConnectionString, AMissingKeywordComesLast) {
  EXPECT_EQ(WithOdbcKeyword("DSN=local", "Database", "new"), "DSN=local;Database=new");
  EXPECT_EQ(WithOdbcKeyword("DSN=local;", "Database", "new"), "DSN=local;Database=new");
}

TEST(OdbcConnectionString, WhatLooksLikeAKeywordInsideBracesIsAValue) {
  EXPECT_EQ(WithOdbcKeyword("PWD={a;Database=b};Database=old", "Database", "new"), "PWD={a;Database=b};Database=new");
  EXPECT_EQ(WithOdbcKeyword("PWD={a}};Database=b};Database=old", "Database", "new"),
            "PWD={a}};Database=b};Database=new");
}

TEST(OdbcConnectionString, AValueIsBracedIfItMustBe) {
  EXPECT_EQ(WithOdbcKeyword("DSN=x", "Database", "a;b}c"), "DSN=x;Database={a;b}}c}");
  EXPECT_EQ(OdbcKeyword("DSN=x;Database={a;b}}c}", "database"), "a;b}c");
}

TEST(OdbcConnectionString, TheLastOfTwoEqualKeywordsHolds) {
  EXPECT_EQ(OdbcKeyword("Database=one;Database=two", "Database"), "two");
  EXPECT_EQ(WithOdbcKeyword("Database=one;Database=two", "Database", "three"), "Database=one;Database=three");
}

TEST(OdbcConnectionString, AKeywordIsTakenOutWithItsValue) {
  EXPECT_EQ(WithoutOdbcKeyword("FILEDSN=/a b.dsn;UID=u", "filedsn"), "UID=u");
  EXPECT_EQ(WithoutOdbcKeyword("UID=u;FILEDSN={/a;b.dsn}", "FILEDSN"), "UID=u;");
  EXPECT_EQ(WithoutOdbcKeyword("UID=u", "FILEDSN"), "UID=u");
}

TEST(OdbcConnectionString, ALineEndIsABlank) {
  EXPECT_EQ(OdbcKeyword("UID=qmx;\r\nDATABASE = a\r\n", "database"), "a");
  EXPECT_EQ(OdbcKeyword(WithOdbcKeyword("UID=qmx;\r\n", "DATABASE", "a"), "database"), "a");
}

TEST(OdbcConnectionString, ThereIsNothingUnderAMissingKeyword) {
  EXPECT_EQ(OdbcKeyword("DSN=x", "Database"), "");
  EXPECT_EQ(OdbcKeyword("", "Database"), "");
  EXPECT_EQ(OdbcKeyword("no pair", "Database"), "");
}

}  // namespace
}  // namespace qmx::test
