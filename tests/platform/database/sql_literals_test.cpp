#include "platform/sql_literals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qmx::test {
namespace {

using testing::ElementsAre;

// The shape and its values, as "shape <- 'text', integer"; the word alone for a text that is left as it stands.
std::string Taken(std::string_view statement) {
  const std::optional<StatementShape> shape = ShapeOf(statement);
  if (!shape) return "as it stands";
  std::string text = shape->text + " <-";
  for (const Variant& value : shape->values)
    text += value.IfText() ? " '" + *value.IfText() + "'" : " " + value.ToText();
  return text;
}

TEST(Literals, AreTakenOutOfTheConditionsOfASelect) {
  EXPECT_EQ(Taken("select * from tsmdm030 where cstp='R'"), "select * from tsmdm030 where cstp=? <- 'R'");
  EXPECT_EQ(Taken("select * from tstables where tablename = 'tsmdm030'"),
            "select * from tstables where tablename = ? <- 'tsmdm030'");
  EXPECT_EQ(Taken("select * from tssoc210 where orno='S1' and   acln= 10"),
            "select * from tssoc210 where orno=? and   acln= ? <- 'S1' 10");
  EXPECT_EQ(Taken("select * from tcccp030 where ccal='C' and   ract='W' and   stdt='2026-01-31' and   sttm= 480"),
            "select * from tcccp030 where ccal=? and   ract=? and   stdt=? and   sttm= ? <- 'C' 'W' '2026-01-31' 480");
  EXPECT_EQ(Taken("select min(tcccp030.stdt)  from tcccp030 where tcccp030.ccal = 'C'"),
            "select min(tcccp030.stdt)  from tcccp030 where tcccp030.ccal = ? <- 'C'");
}

TEST(Literals, AreTakenOutBeforeAnOrderOfColumns) {
  EXPECT_EQ(
      Taken("select *  from tcccp030 where tcccp030.ccal = 'C' and tcccp030.stdt > '2026-01-31' and tcccp030.stdt "
            "<= '2026-03-02' order by tcccp030.stdt, tcccp030.sttm "),
      "select *  from tcccp030 where tcccp030.ccal = ? and tcccp030.stdt > ? and tcccp030.stdt <= ? order by "
      "tcccp030.stdt, tcccp030.sttm  <- 'C' '2026-01-31' '2026-03-02'");
  EXPECT_EQ(Taken("SELECT a FROM t WHERE a<>'x' ORDER BY b DESC, \"c\" asc"),
            "SELECT a FROM t WHERE a<>? ORDER BY b DESC, \"c\" asc <- 'x'");
}

TEST(Literals, AreTakenOutOfADelete) {
  EXPECT_EQ(Taken("DELETE FROM tcccp030 WHERE ccal = 'C'"), "DELETE FROM tcccp030 WHERE ccal = ? <- 'C'");
  EXPECT_EQ(Taken(" delete from tscalender where tscalender.ccal = 'C'"),
            " delete from tscalender where tscalender.ccal = ? <- 'C'");
  EXPECT_EQ(Taken("\n\tdelete\r\nfrom t where a>=-5"), "\n\tdelete\r\nfrom t where a>=? <- -5");
}

TEST(Literals, AreTakenOutOfAnInsertOfARow) {
  EXPECT_EQ(Taken("insert into tscalender (ccal,sttm,entm) Values ('C','2026-01-31 08:00:00','2026-01-31')"),
            "insert into tscalender (ccal,sttm,entm) Values (?,?,?) <- 'C' '2026-01-31 08:00:00' '2026-01-31'");
  EXPECT_EQ(Taken("INSERT INTO t(a , \"b\")VALUES( -1 ,'x' )"), "INSERT INTO t(a , \"b\")VALUES( ? ,? ) <- -1 'x'");
}

TEST(Literals, AreWhatTheDatabaseReadsInThem) {
  const auto valueOf = [](const std::string& literal) { return ShapeOf("select a from t where a=" + literal)->values; };
  EXPECT_THAT(valueOf("''"), ElementsAre(Variant("")));
  EXPECT_THAT(valueOf("''''"), ElementsAre(Variant("'")));
  EXPECT_THAT(valueOf("'O''Neil'''"), ElementsAre(Variant("O'Neil'")));
  EXPECT_THAT(valueOf("' -- /* ; ? \" and 1 '"), ElementsAre(Variant(" -- /* ; ? \" and 1 ")));
  EXPECT_THAT(valueOf("'a\nb'"), ElementsAre(Variant("a\nb")));
  EXPECT_THAT(valueOf("'Z\xC3\xBCrich'"), ElementsAre(Variant("Z\xC3\xBCrich")));
  EXPECT_THAT(valueOf("0"), ElementsAre(Variant(0)));
  EXPECT_THAT(valueOf("-0"), ElementsAre(Variant(0)));
  EXPECT_THAT(valueOf("007"), ElementsAre(Variant(7)));
  EXPECT_THAT(valueOf("2147483647"), ElementsAre(Variant(2147483647)));
  EXPECT_THAT(valueOf("-2147483647"), ElementsAre(Variant(-2147483647)));
}

TEST(Literals, OfIntegersGiveWayToTheParametersThatTheDatabaseNeeds) {
  EXPECT_EQ(ShapeOf("select a from t where a='5' and b=5", "cast(? as integer)")->text,
            "select a from t where a=? and b=cast(? as integer)");
}

TEST(Literals, StayWhereAParameterMightMeanSomethingElse) {
  for (const char* behind : {"=2147483648",
                             "=-2147483648",
                             "=5.0",
                             "=5.",
                             "=.5",
                             "=5e2",
                             "=0x10",
                             "=5a",
                             "=5and b=6",
                             "=5_000",
                             "=- 5",
                             "=+5",
                             "=--5",
                             "=(5)",
                             "=null",
                             "=b",
                             "='a' 'b'",
                             "='a'\n'b'",
                             "='a''",
                             "='",
                             "='a' collate nocase",
                             "='a' || 'b'",
                             "='5'::int",
                             "=5::text",
                             "=date '2026-01-31'",
                             "=x'41'",
                             "=X'41'",
                             "=E'a'",
                             "=n'a'",
                             "=U&'a'",
                             "=_utf8'a'",
                             "=$$a$$",
                             "=\"a\"",
                             "=?",
                             "='a' and b=?",
                             "=:a",
                             "=@a",
                             "=$1",
                             "==5",
                             "!=5",
                             "<=>5",
                             "->5",
                             " is 5",
                             " like 'a'",
                             " like 'a!' escape '!'",
                             " in ('a')",
                             " between 1 and 2",
                             " not like 'a'",
                             "||'a'='a'",
                             "+1=5",
                             "='a' or b='b'",
                             "='a' limit 1",
                             "=5 group by a",
                             "=5 order by 1",
                             "=5 order by b limit 1",
                             "=5 order by b+1",
                             "=5 order by b nulls last",
                             "='a' for update",
                             "='a' union select 'b'",
                             "='a';",
                             "='a'; select 1",
                             "='a' -- b",
                             "='a' # b",
                             "='a' /* b */",
                             "=/**/'a'",
                             "='a\\'",
                             "='a\\b'",
                             "={d '2026-01-31'}",
                             "='a')",
                             "='a' and",
                             "='a' b='b'",
                             "='a',"}) {
    EXPECT_EQ(Taken(std::string("select a from t where a") + behind), "as it stands") << behind;
  }
  using namespace std::string_literals;
  EXPECT_EQ(Taken("select a from t where a='b\0c'"s), "as it stands");
  EXPECT_EQ(Taken("select a from t where a='b'\0"s), "as it stands");
}

TEST(Literals, StayInAnyOtherStatement) {
  for (const char* statement : {"",
                                " ",
                                "select",
                                "select * from t",
                                "select 'x' from t where a='b'",
                                "select 1 from t where a='b'",
                                "select a+b from t where a='b'",
                                "select `a` from t where a='b'",
                                "select [a] from t where a='b'",
                                "select a from t where (a='b')",
                                "select a from t where not a='b'",
                                "select a from t where 'b'=a",
                                "select a from t where lower(a)='b'",
                                "select a from t where a='b' and 1=1",
                                "select \"a from t where a='b'",
                                "select a from t where \xC3\xBC='b'",
                                "select a from t join u on t.a=u.a where t.a='b'",
                                "select a from (select a from t where a='b') u",
                                "explain select a from t where a='b'",
                                "-- x\nselect a from t where a='b'",
                                "DELETE FROM t WHERE 1=1",
                                "delete from t",
                                "delete t where a='b'",
                                "delete from t u where a='b'",
                                "delete from t where a='b' order by a limit 1",
                                "delete from t where a='b' returning a",
                                "update t set a='b'",
                                "update t set a='b' where a='c'",
                                "insert into t values ('a')",
                                "insert into t (a) values ('a'),('b')",
                                "insert into t (a) values (null)",
                                "insert into t (a,b) values ('a',b)",
                                "insert into t (a) values ('a') returning a",
                                "insert into t (a) select 'a'",
                                "replace into t (a) values ('a')",
                                "insert or ignore into t (a) values ('a')",
                                "set a='b'",
                                "with u as (select 1) select a from u where a='b'"}) {
    EXPECT_EQ(Taken(statement), "as it stands") << statement;
  }
}

TEST(Literals, StayWhereTheyAreVeryMany) {
  std::string statement = "select a from t where a='b'";
  for (int further = 1; further < 64; ++further) statement += " and a='b'";
  EXPECT_EQ(ShapeOf(statement)->values.size(), 64u);
  EXPECT_EQ(Taken(statement + " and a='b'"), "as it stands");
}

}  // namespace
}  // namespace qmx::test
