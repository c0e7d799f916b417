#include "platform/sql_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

SqlText Quoted(const Variant& value) { return SqlText("select * from t where k='").Value(value).Append("'"); }
SqlText Bare(const Variant& value) { return SqlText("select * from t where k= ").Value(value); }

TEST(SqlText, IsWhatWasConcatenated) {
  SqlText text("DELETE FROM tssoc210 where orno='");
  text.Value("SO1").Append("'").Append(" and   acln= ").Value(10);
  EXPECT_EQ(text.Text(), "DELETE FROM tssoc210 where orno='SO1' and   acln= 10");
  text.Check();
}

TEST(SqlText, ValuesGoInAsTheirTexts) {
  EXPECT_EQ(Quoted(12.5).Text(), "select * from t where k='12.5'");
  EXPECT_EQ(Quoted(DateTime::FromDate(2026, 11, 20)).Text(), "select * from t where k='2026-11-20'");
  EXPECT_EQ(Quoted(Variant::Null()).Text(), "select * from t where k=''");
  EXPECT_EQ(Bare(90.5).Text(), "select * from t where k= 90.5");
  EXPECT_EQ(Bare("-7").Text(), "select * from t where k= -7");
  EXPECT_EQ(Raised([] { Quoted(Object()); }).Number(), 13);
}

TEST(SqlText, AQuotedValueWithAQuoteBreaksIt) {
  for (const char* value : {"'", "O'Neil", "x' or 'a'='a", "''", "x'; drop table t --"}) {
    const SqlText text = Quoted(value);
    const Error error = Raised([&] { text.Check(); });
    EXPECT_EQ(error.Number(), -2147217900) << value;
    EXPECT_THAT(error.Description(), HasSubstr(value));
    ASSERT_EQ(error.Details().size(), 1U);
    EXPECT_EQ(error.Details()[0].first, "statement");
    EXPECT_EQ(error.Details()[0].second, "select * from t where k='" + std::string(value) + "'");
  }
}

TEST(SqlText, ABareValueThatIsNoNumberBreaksIt) {
  for (const Variant& value :
       {Variant("x"), Variant(""), Variant::Null(), Variant(), Variant("1 or 1=1"), Variant("1;"), Variant("'1'"),
        Variant(DateTime::FromDate(2026, 1, 1)), Variant("nan"), Variant(std::numeric_limits<double>::infinity())}) {
    EXPECT_EQ(Raised([&] { Bare(value).Check(); }).Number(), -2147217900) << value.ToText();
  }
  for (const Variant& value : {Variant(1), Variant("1"), Variant(" 2 "), Variant("-1.5e3"), Variant(0.001)}) {
    Bare(value).Check();
  }
}

TEST(SqlText, ANulCharacterBreaksIt) {
  EXPECT_EQ(Raised([] { Quoted(std::string("a\0b", 3)).Check(); }).Number(), -2147217900);
}

TEST(SqlText, OtherSignsAreHarmlessBetweenQuotes) {
  for (const char* value : {"a;b", "--", "/*", "\"", "\\", "%", "Zürich"}) Quoted(value).Check();
}

TEST(SqlText, AValueAfterAClosedQuoteStandsBare) {
  const SqlText text = SqlText("select * from t where a='x' and b=").Value("y");
  EXPECT_EQ(Raised([&] { text.Check(); }).Number(), -2147217900);
}

TEST(SqlText, OnceBrokenItStaysBrokenWithTheFirstReason) {
  SqlText text = Quoted("first'");
  text.Append(" and l='").Value("second").Append("'");
  EXPECT_THAT(Raised([&] { text.Check(); }).Description(), HasSubstr("first'"));
}

TEST(SqlText, FixedPiecesMayHoldQuotes) {
  SqlText("select DISTINCT tsmdm140.ccal  from tsmdm140 WHERE tsmdm140.ccal <>  '' ").Check();
}

}  // namespace
}  // namespace qmx::test
