#include "platform/sql_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
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
  EXPECT_EQ(Bare("007").Text(), "select * from t where k= 007");
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

std::string SharedForm(const SqlText& text) { return text.Shape().SharedForm("int(?)").value_or("none"); }

TEST(SharedForm, HasAParameterInThePlaceOfEachValueAndItsQuotes) {
  EXPECT_EQ(SharedForm(Quoted("A")), "select * from t where k=?");
  EXPECT_EQ(SharedForm(Bare(5)), "select * from t where k= int(?)");
  const DateTime start = DateTime::FromDate(2026, 1, 31);
  const SqlText insert = SqlText("insert into t values ('")
                             .Value("A")
                             .Append("','")
                             .Value(start)
                             .Append("',")
                             .Value(-7)
                             .Append(", 'x' ,'")
                             .Value("")
                             .Append("')");
  EXPECT_EQ(SharedForm(insert), "insert into t values (?,?,int(?), 'x' ,?)");
  EXPECT_THAT(insert.Values(), ElementsAre(Variant("A"), Variant(start), Variant(-7), Variant("")));
}

TEST(SharedForm, PassesQuotedValuesAsTextsExceptMoments) {
  EXPECT_THAT(Quoted(5).Values(), ElementsAre(Variant("5")));
  EXPECT_THAT(Quoted(12.5).Values(), ElementsAre(Variant("12.5")));
  EXPECT_THAT(Quoted(Variant::Null()).Values(), ElementsAre(Variant("")));
  const DateTime noon = DateTime::FromDate(2026, 1, 31).PlusTime(12, 0, 0);
  EXPECT_THAT(Quoted(noon).Values(), ElementsAre(Variant(noon)));
}

TEST(SharedForm, TakesABareNumberOnlyIfItIsA32BitInteger) {
  for (const Variant& value : {Variant(5), Variant("5"), Variant(5.0), Variant(std::int16_t{5})}) {
    EXPECT_THAT(Bare(value).Values(), ElementsAre(Variant(5)));
  }
  EXPECT_THAT(Bare("-2147483648").Values(), ElementsAre(Variant(std::numeric_limits<std::int32_t>::min())));
  for (const char* number :
       {"90.5", "1e3", "2147483648", "-2147483649", "99999999999999999999", "007", "-0", "+5", " 5", "5.", ".5"}) {
    const SqlText text = Bare(number);
    text.Check();
    EXPECT_EQ(SharedForm(text), "none") << number;
    EXPECT_EQ(SharedForm(Bare(number).Append(" and l=").Value(7)),
              "select * from t where k= " + std::string(number) + " and l=int(?)");
  }
}

SqlText StartIs(const char* comparison, const Variant& moment) {
  return SqlText("select * from t where start").Append(comparison).Append("'").Moment(moment).Append("' and n=1");
}

TEST(SqlText, ShowsAMomentAsItWasGiven) {
  EXPECT_EQ(StartIs("=", "2026-1-5").Text(), "select * from t where start='2026-1-5' and n=1");
  EXPECT_EQ(StartIs("=", DateTime::FromDate(2026, 1, 5)).Text(), "select * from t where start='2026-01-05' and n=1");
  EXPECT_EQ(StartIs("=", "next week").Text(), "select * from t where start='next week' and n=1");
}

TEST(SqlText, GivesQuotedMomentsInAnotherFormOnDemand) {
  const auto full = [](const SqlText& text) { return text.Text(&DateTime::ToFullText); };
  const DateTime day = DateTime::FromDate(2026, 1, 5);
  EXPECT_EQ(full(StartIs("=", "2026-1-5")), "select * from t where start='2026-01-05 00:00:00' and n=1");
  EXPECT_EQ(full(StartIs("=", " 2026-01-05 ")), "select * from t where start='2026-01-05 00:00:00' and n=1");
  EXPECT_EQ(full(StartIs("=", day)), "select * from t where start='2026-01-05 00:00:00' and n=1");
  EXPECT_EQ(full(StartIs("=", "next week")), "select * from t where start='next week' and n=1");
  EXPECT_EQ(full(Quoted(day)), "select * from t where k='2026-01-05 00:00:00'");
  EXPECT_EQ(full(Quoted("2026-01-05")), "select * from t where k='2026-01-05'");
}

TEST(SqlText, RefusesAMomentThatHoldsAQuote) {
  EXPECT_EQ(Raised([&] { StartIs("=", "2026-01-05'").Check(); }).Number(), -2147217900);
}

TEST(SharedForm, HasTheDatabasesOwnComparisonIfSomethingEqualsAMoment) {
  const auto form = [](const SqlText& text) { return text.Shape().SharedForm("?", " in (?,?)").value_or("none"); };
  EXPECT_EQ(form(StartIs("=", "2026-1-5")), "select * from t where start in (?,?) and n=1");
  EXPECT_EQ(form(Quoted(DateTime::FromDate(2026, 1, 5))), "select * from t where k in (?,?)");
  for (const std::string comparison : {"<", ">", "<=", ">=", "!=", "<>", "= "}) {
    EXPECT_EQ(form(StartIs(comparison.c_str(), "2026-1-5")), "select * from t where start" + comparison + "? and n=1");
  }
  EXPECT_EQ(form(Quoted("2026-01-05")), "select * from t where k=?");
  EXPECT_EQ(form(SqlText("insert into t values ('").Moment("2026-01-05").Append("')")), "insert into t values (?)");
}

TEST(SharedForm, IsNoneWithoutValues) {
  EXPECT_EQ(SharedForm("select * from t where k='A' and l=5"), "none");
  EXPECT_EQ(SharedForm(""), "none");
}

TEST(SharedForm, IsNoneIfAValueIsAPartOfALiteral) {
  using Around = std::pair<const char*, const char*>;
  for (const auto& [before, behind] : {Around{"k='", "%'"},
                                       {"k='%", "'"},
                                       {"k='", "''x'"},
                                       {"k='''", "'"},
                                       {"k=E'", "'"},
                                       {"k='", "'::x"},
                                       {"k=", "5"},
                                       {"k=1", ""},
                                       {"k=-", ""},
                                       {"k=", ".5"},
                                       {"k='", "'5"},
                                       {"k='", ""}}) {
    EXPECT_EQ(SharedForm(SqlText(before).Value(5).Append(behind)), "none") << before << " " << behind;
  }
  EXPECT_EQ(SharedForm(SqlText("k='").Value("A").Value("B").Append("'")), "none");
  EXPECT_EQ(SharedForm(SqlText("k=").Value(1).Value(2)), "none");
  EXPECT_EQ(SharedForm(SqlText("k='").Value("A").Append("'").Value(2)), "none");
}

TEST(SqlShape, IsTheSameForTextsThatDifferInTheirValuesOnly) {
  EXPECT_EQ(Quoted("A").Shape(), Quoted("a longer value").Shape());
  EXPECT_EQ(Quoted(DateTime()).Shape(), Quoted(DateTime::FromDate(2026, 1, 31)).Shape());
  EXPECT_NE(Quoted(DateTime()).Shape(), Quoted("A").Shape());
  EXPECT_EQ(Bare(5).Shape(), Bare(-17).Shape());
  EXPECT_NE(Bare(5).Shape(), Bare(5.5).Shape());
  EXPECT_NE(Bare(5).Shape(), SqlText("select * from t where k= ").Shape());
  EXPECT_NE(SqlText("a=").Value(1).Append(",").Shape(), SqlText("a=,").Value(1).Shape());
}

TEST(SqlText, ShowsMomentsAsADatabaseSystemHasThem) {
  SqlText text = Quoted(DateTime::FromDate(2026, 1, 31));
  text.Append(" and l='").Value("2026-01-31").Append("'");
  EXPECT_EQ(text.Text([](DateTime moment) { return moment.ToText() + " 00:00:00"; }),
            "select * from t where k='2026-01-31 00:00:00' and l='2026-01-31'");
  EXPECT_EQ(text.Text(), "select * from t where k='2026-01-31' and l='2026-01-31'");
}

TEST(SqlText, IsAsNewOnceItIsRestarted) {
  SqlText text = Quoted("first'");
  text.Restart("delete from t where k=").Value(7);
  text.Check();
  EXPECT_EQ(text.Text(), "delete from t where k=7");
  EXPECT_EQ(SharedForm(text), "delete from t where k=int(?)");
  EXPECT_THAT(text.Values(), ElementsAre(Variant(7)));
}

}  // namespace
}  // namespace qmx::test
