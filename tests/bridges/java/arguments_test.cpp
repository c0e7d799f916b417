#include "platform/components/date_object.h"
#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class JavaArguments : public JavaComponents {
 protected:
  template <typename... Values>
  std::string Call(const char* name, Values... values) {
    return target.Call(std::string_view(name), values...).ToText();
  }
  template <typename... Values>
  std::string Refusal(std::int32_t number, const char* name, Values... values) {
    const Error error = Raised([&] { Call(name, values...); });
    EXPECT_EQ(error.Number(), number) << error.Description();
    return error.Description();
  }
  Object target = components.CreateObject("bridge.Arguments");
};

TEST_F(JavaArguments, OfWholeNumbersBecomeEveryNumberThatHoldsThem) {
  EXPECT_EQ(Call("ofInt", 5), "java.lang.Integer 5");
  EXPECT_EQ(Call("ofInt", std::int16_t{5}), "java.lang.Integer 5");
  EXPECT_EQ(Call("ofInt", std::uint8_t{255}), "java.lang.Integer 255");
  EXPECT_EQ(Call("ofByte", -128), "java.lang.Byte -128");
  EXPECT_EQ(Call("ofShort", 32767), "java.lang.Short 32767");
  EXPECT_EQ(Call("ofLong", -1), "java.lang.Long -1");
  EXPECT_EQ(Call("ofFloat", 3), "java.lang.Float 3.0");
  EXPECT_EQ(Call("ofDouble", 3), "java.lang.Double 3.0");
  EXPECT_EQ(Call("ofIntegerBox", 7), "java.lang.Integer 7");
  EXPECT_EQ(Call("ofBigInteger", 7), "java.math.BigInteger 7");
  EXPECT_EQ(Call("ofBigDecimal", 7), "java.math.BigDecimal 7");
  EXPECT_EQ(Call("ofNumber", 7), "java.lang.Integer 7");
  EXPECT_EQ(Call("ofObject", 7), "java.lang.Integer 7");
}

TEST_F(JavaArguments, OfDoublesBecomeEveryNumberThatHoldsThem) {
  EXPECT_EQ(Call("ofDouble", 99999.9999), "java.lang.Double 99999.9999");
  EXPECT_EQ(Call("ofFloat", 0.5), "java.lang.Float 0.5");
  EXPECT_EQ(Call("ofInt", 3.0), "java.lang.Integer 3");
  EXPECT_EQ(Call("ofBigDecimal", 0.1), "java.math.BigDecimal 0.1");
  EXPECT_EQ(Call("ofObject", 0.5), "java.lang.Double 0.5");
}

TEST_F(JavaArguments, ThatWouldLoseSomethingAreRefused) {
  EXPECT_EQ(Refusal(13, "ofByte", 128),
            "Parameter 1 of bridge.Arguments.ofByte(byte) wants byte, which a java.lang.Integer (128) cannot become.");
  EXPECT_EQ(Refusal(13, "ofInt", 0.5),
            "Parameter 1 of bridge.Arguments.ofInt(int) wants int, which a java.lang.Double (0.5) cannot become.");
  EXPECT_THAT(Refusal(13, "ofFloat", 0.1), HasSubstr("wants float"));
  EXPECT_THAT(Refusal(13, "ofInt", 1e300), HasSubstr("wants int"));
}

TEST_F(JavaArguments, OfBooleansBecomeBooleans) {
  EXPECT_EQ(Call("ofBoolean", true), "java.lang.Boolean true");
  EXPECT_EQ(Call("ofBooleanBox", false), "java.lang.Boolean false");
  EXPECT_EQ(Call("ofObject", true), "java.lang.Boolean true");
  EXPECT_THAT(Refusal(13, "ofInt", true), HasSubstr("a java.lang.Boolean (true) cannot become"));
}

TEST_F(JavaArguments, OfTextsBecomeStringsAndCharacters) {
  EXPECT_EQ(Call("ofString", "ä € 🚚"), "java.lang.String ä € 🚚");
  EXPECT_EQ(Call("ofString", ""), "java.lang.String ");
  EXPECT_EQ(Call("ofCharSequence", "a"), "java.lang.String a");
  EXPECT_EQ(Call("ofChar", "ä"), "java.lang.Character ä");
  EXPECT_EQ(Call("ofObject", "a"), "java.lang.String a");
  EXPECT_THAT(Refusal(13, "ofChar", "ab"), HasSubstr("wants char, which a java.lang.String cannot become."));
  EXPECT_EQ(Refusal(13, "ofTwo", "a", "b"),
            "Parameter 2 of bridge.Arguments.ofTwo(java.lang.String, int) wants int, which a java.lang.String cannot "
            "become.");
  EXPECT_EQ(Refusal(13, "ofString", "\xFF"), "The text for Java is no UTF-8.");
}

TEST_F(JavaArguments, OfNullAndOfNoObjectBecomeNull) {
  EXPECT_EQ(Call("ofString", Variant::Null()), "null");
  EXPECT_EQ(Call("ofIntegerBox", Variant::Null()), "null");
  EXPECT_EQ(Call("ofObject", Object()), "null");
  EXPECT_EQ(Call("ofDate", Variant()), "null");
  EXPECT_THAT(Refusal(13, "ofInt", Variant::Null()), HasSubstr("wants int, which null cannot become."));
}

TEST_F(JavaArguments, OfMomentsBecomeEveryClassOfDateAndTime) {
  const DateTime day = DateTime::FromDate(2026, 11, 20);
  const DateTime moment = day.PlusTime(14, 5, 9);
  EXPECT_EQ(Call("ofLocalDateTime", moment), "java.time.LocalDateTime 2026-11-20T14:05:09");
  EXPECT_EQ(Call("ofLocalDate", day), "java.time.LocalDate 2026-11-20");
  EXPECT_EQ(Call("ofTimestamp", moment), "java.sql.Timestamp 2026-11-20 14:05:09.0");
  EXPECT_EQ(Call("ofSqlDate", day), "java.sql.Date 2026-11-20");
  EXPECT_EQ(Call("ofDate", moment), "126 10 20 14 5 9");
  EXPECT_EQ(Call("ofObject", moment), "java.time.LocalDateTime 2026-11-20T14:05:09");
  EXPECT_THAT(Refusal(13, "ofLocalDate", moment), HasSubstr("wants java.time.LocalDate"));
  EXPECT_THAT(Refusal(13, "ofSqlDate", moment), HasSubstr("wants java.sql.Date"));
  EXPECT_THAT(Refusal(13, "ofString", moment), HasSubstr("wants java.lang.String"));
}

TEST_F(JavaArguments, OfTheProgramsDateBecomeADateWithTheSameFields) {
  clock.now = DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9);
  const Object date = MakeDateObject(clock);
  EXPECT_EQ(Call("ofDate", date), "126 10 20 14 5 9");
  EXPECT_EQ(Call("ofTimestamp", date), "java.sql.Timestamp 2026-11-20 14:05:09.0");
  date.Call("setYear", 0);
  date.Call("setMonth", 0);
  date.Call("setDate", 1);
  EXPECT_EQ(Call("ofDate", date), "0 0 1 14 5 9");
}

TEST_F(JavaArguments, OfAnHourThatTheTimeZoneLeavesOutBecomeTheNextHour) {
  clock.now = DateTime::FromDate(2026, 3, 29).PlusTime(2, 30, 0);
  EXPECT_EQ(Call("ofDate", MakeDateObject(clock)), "126 2 29 3 30 0");
  EXPECT_EQ(Call("ofDate", clock.now), "126 2 29 3 30 0");
  EXPECT_EQ(Call("ofLocalDateTime", clock.now), "java.time.LocalDateTime 2026-03-29T02:30");
}

TEST_F(JavaArguments, OfJavaComeBackAsTheObjectsThatTheyWere) {
  EXPECT_EQ(Call("ofArguments", target), "this");
  const Object date = components.CreateObject("java:java.util.Date");
  date.Call("setYear", 126);
  EXPECT_EQ(Call("ofDate", date).substr(0, 4), "126 ");
  EXPECT_THAT(Refusal(13, "ofArguments", date), HasSubstr("wants bridge.Arguments, which a java.util.Date cannot"));
}

TEST_F(JavaArguments, OfOtherObjectsOfTheProgramAreRefused) {
  class Thing : public Dispatch {
    Variant Invoke(const Member&, std::span<const Argument>) override { throw Error(438, "Thing", "No such member."); }
  };
  EXPECT_EQ(Refusal(13, "ofObject", Object(std::make_shared<Thing>())),
            "Parameter 1 of ofObject is an object that is neither of Java nor a date: No such member.");
}

TEST_F(JavaArguments, ChooseTheOverloadOfTheNearestType) {
  EXPECT_EQ(Call("number", 1), "int");
  EXPECT_EQ(Call("number", 1.5), "double");
  EXPECT_EQ(Call("number", true), "Object");
  EXPECT_EQ(Call("wide", 1), "long");
  EXPECT_EQ(Call("wide", 1.0), "double");
  EXPECT_EQ(Call("wide", "1"), "Object");
  EXPECT_EQ(Call("text", "a"), "String");
  EXPECT_EQ(Call("letter", "a"), "char");
  EXPECT_EQ(Call("letter", "ab"), "Object");
  EXPECT_EQ(Call("kind", components.CreateObject("bridge.Arguments$Derived")), "Derived");
  EXPECT_EQ(Call("kind", components.CreateObject("bridge.Arguments$Base")), "Base");
  EXPECT_EQ(Call("special", Variant::Null()), "String");
}

TEST_F(JavaArguments, ChooseTheOverloadOfTheirNumber) {
  EXPECT_EQ(Call("count"), "none");
  EXPECT_EQ(Call("count", 1), "one");
  EXPECT_EQ(Call("count", 1, 2), "two");
  EXPECT_EQ(Refusal(450, "count", 1, 2, 3), "bridge.Arguments.count takes 0 or 1 or 2 arguments, not 3.");
  EXPECT_EQ(Refusal(450, "ofTwo"), "bridge.Arguments.ofTwo takes 2 arguments, not 0.");
  EXPECT_EQ(Refusal(450, "ofDate"), "bridge.Arguments.ofDate takes 1 argument, not 0.");
}

TEST_F(JavaArguments, ThatFitSeveralOverloadsAlikeAreRefusedWithTheCandidates) {
  EXPECT_EQ(Refusal(13, "clash", 1, 2),
            "bridge.Arguments.clash is ambiguous for arguments of the types (java.lang.Integer, java.lang.Integer); "
            "there are clash(int, long), clash(long, int).");
  EXPECT_EQ(Refusal(13, "onlyText", Variant::Null()),
            "bridge.Arguments.onlyText is ambiguous for arguments of the types (null); there are "
            "onlyText(java.lang.Character), onlyText(java.lang.String).");
}

TEST_F(JavaArguments, ThatFitNoOverloadAreRefusedWithAllOfThem) {
  EXPECT_EQ(Refusal(13, "onlyText", 1),
            "bridge.Arguments.onlyText takes no arguments of the types (java.lang.Integer); there are "
            "onlyText(java.lang.Character), onlyText(java.lang.String).");
}

TEST_F(JavaArguments, ByReferenceAreReadAndNotChanged) {
  Variant variable = 5;
  EXPECT_EQ(target.Call("ofInt", Ref(variable)), Variant("java.lang.Integer 5"));
  EXPECT_EQ(variable, Variant(5));
}

}  // namespace
}  // namespace qmx::test
