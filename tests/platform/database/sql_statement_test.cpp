#include "platform/sql_statement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

TEST(OneStatement, IsAllowedWithBlanksAndRemarksAround) {
  for (const char* text : {"select 1", " select 1 ; ", "select 1;\n-- done", "select 1 /* ; */ ;; /* ; select 2 */",
                           "select ';'", "select \"a;b\" from t", "select [a;b] from t", "select `a;b` from t",
                           "select 'it''s; fine'", "-- first; a remark\nselect 1"}) {
    RequireOneStatement(text);
  }
}

TEST(OneStatement, ASecondOneIsRefusedAndItsBeginningNamed) {
  for (const char* text :
       {"select 1; drop table t", "select 1;;drop table t", "select 1; -- x\n drop table t", "select 'a'; drop table t",
        "select 'it''s'; drop table t", "select 1;/* */drop table t", "select \"a\"\"b\"; drop table t"}) {
    const Error error = Raised([&] { RequireOneStatement(text); });
    EXPECT_EQ(error.Number(), -2147217900) << text;
    EXPECT_THAT(error.Description(), testing::HasSubstr("\"drop\"")) << text;
  }
}

TEST(OneStatement, ATextWithoutOneIsRefused) {
  for (const char* text : {"", "  ", ";", " ; select 1", "-- select 1", "/* select 1"}) {
    EXPECT_EQ(Raised([&] { RequireOneStatement(text); }).Number(), -2147217900) << text;
  }
}

TEST(FirstWord, IsTheStatementsVerb) {
  EXPECT_EQ(FirstWord("select 1"), "select");
  EXPECT_EQ(FirstWord(" \t\r\nDELETE FROM t"), "DELETE");
  EXPECT_EQ(FirstWord("insert"), "insert");
  EXPECT_EQ(FirstWord("-- a remark\n/* another */update/**/t set a=1"), "update");
  for (const char* text : {"", " ", "(select 1)", "'select'", "\"select\"", "; select"}) {
    EXPECT_EQ(FirstWord(text), "") << text;
  }
}

TEST(TableOfRows, IsTheTableOfAQueryThatShowsItsRowsWhole) {
  EXPECT_EQ(TableOfRows("select * from tsmdm030"), "tsmdm030");
  EXPECT_EQ(TableOfRows("SELECT\t*\nFROM Tsmdm030 ;"), "Tsmdm030");
  EXPECT_EQ(TableOfRows("select * from tstables where tablename = 'tsmdm030'"), "tstables");
  EXPECT_EQ(TableOfRows("select *  from tcccp030 where tcccp030.ccal = 'A' order by tcccp030.stdt, tcccp030.sttm "),
            "tcccp030");
  EXPECT_EQ(TableOfRows("select * from t where k in (select k from u group by k)"), "t");
  EXPECT_EQ(TableOfRows("select * from t where k='union'"), "t");
  EXPECT_EQ(TableOfRows("select/* all */*from t -- group by\n"), "t");
  EXPECT_EQ(TableOfRows("select*from t"), "t");
}

TEST(TableOfRows, MayBeQuoted) {
  EXPECT_EQ(TableOfRows("select * from \"my table\" where a=1"), "my table");
  EXPECT_EQ(TableOfRows("select * from \"a\"\"b\""), "a\"b");
  EXPECT_EQ(TableOfRows("select * from `t`"), "t");
  EXPECT_EQ(TableOfRows("select * from [my table]"), "my table");
}

TEST(TableOfRows, IsNoneIfRowsAreMadeUp) {
  for (const char* text : {"select a from t",
                           "select distinct * from t",
                           "select *, a from t",
                           "select t.* from t",
                           "select * from t, u",
                           "select * from t join u on t.a=u.a",
                           "select * from t natural join u",
                           "select * from t x",
                           "select * from t as x",
                           "select * from main.t",
                           "select * from (select * from t)",
                           "select * from t where a=1 union select * from u",
                           "select * from t where a=1 group by a",
                           "select * from t order by a limit 1 except select 1",
                           "delete from t",
                           "with x as (select 1) select * from x",
                           "select * from \"\"",
                           "select * from 't'",
                           "select * from",
                           "select",
                           "",
                           "values (1)"}) {
    EXPECT_EQ(TableOfRows(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace qmx::test
