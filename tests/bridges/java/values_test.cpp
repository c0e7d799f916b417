#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class JavaValues : public JavaComponents {
 protected:
  Variant Get(const char* name) { return values.Call(std::string_view(name)); }
  void ExpectFailure(const char* name, std::int32_t number, const std::string& description) {
    const Error error = Raised([&] { Get(name); });
    EXPECT_EQ(error.Number(), number) << name;
    EXPECT_THAT(error.Description(), HasSubstr(description));
    EXPECT_EQ(error.Source(), "Java");
  }
  Object values = components.CreateObject("bridge.Values");
};

TEST_F(JavaValues, OfByteShortAndIntAre32BitIntegers) {
  EXPECT_EQ(Get("getByte"), Variant(-128));
  EXPECT_EQ(Get("getShort"), Variant(-32768));
  EXPECT_EQ(Get("getInt"), Variant(INT32_MIN));
  EXPECT_EQ(Get("getByteBox"), Variant(127));
  EXPECT_EQ(Get("getShortBox"), Variant(32767));
  EXPECT_EQ(Get("getIntBox"), Variant(70000));
  EXPECT_EQ(Get("getIntAsObject"), Variant(7));
  EXPECT_EQ(Get("getNumber"), Variant(7));
}

TEST_F(JavaValues, OfLongAreExactOrAnOverflow) {
  EXPECT_EQ(Get("getSmallLong"), Variant(INT32_MAX));
  EXPECT_EQ(Get("getExactLong"), Variant(9007199254740992.0));
  EXPECT_EQ(Get("getLongBox"), Variant(5e9));
  ExpectFailure("getInexactLong", 6, "Overflow: the long 9007199254740993 ");
  ExpectFailure("getInexactLongBox", 6, "Overflow: the long -9007199254740993 ");
}

TEST_F(JavaValues, OfFloatAndDoubleAreDoubles) {
  EXPECT_EQ(Get("getFloat"), Variant(0.5));
  EXPECT_EQ(Get("getDouble"), Variant(0.1));
  EXPECT_EQ(Get("getFloatBox"), Variant(1.25));
  EXPECT_EQ(Get("getDoubleBox"), Variant(-2.5));
}

TEST_F(JavaValues, OfBooleanAreBooleans) {
  EXPECT_EQ(Get("getTrue"), Variant(true));
  EXPECT_EQ(Get("getFalse"), Variant(false));
  EXPECT_EQ(Get("getBooleanBox"), Variant(true));
}

TEST_F(JavaValues, OfCharAreTexts) {
  EXPECT_EQ(Get("getChar"), Variant("é"));
  EXPECT_EQ(Get("getCharBox"), Variant("x"));
}

TEST_F(JavaValues, OfBigIntegerAndBigDecimalAreTextsWithEveryDigit) {
  EXPECT_EQ(Get("getBigInteger"), Variant("123456789012345678901234567890"));
  EXPECT_EQ(Get("getBigDecimal"), Variant("1000"));
  EXPECT_EQ(Get("getSmallBigDecimal"), Variant("0.00000012340"));
}

TEST_F(JavaValues, OfStringAreTextsOfAnyCharacters) {
  EXPECT_EQ(Get("getEmpty"), Variant(""));
  EXPECT_EQ(Get("getText"), Variant("abcdefghijklmnopqrst"));
  EXPECT_EQ(Get("getUnicode"), Variant("ä € 🚚"));
  EXPECT_EQ(Get("getTextAsObject"), Variant("text"));
  const Variant text = Get("getLong");
  ASSERT_EQ(text.IfText()->size(), 200000u);
  EXPECT_EQ(text.IfText()->substr(199996), "ää");
}

TEST_F(JavaValues, OfStringWithANulCharacterOrHalfAPairAreRefused) {
  ExpectFailure("getNul", 13, "The text from Java holds a NUL character.");
  ExpectFailure("getHalfAPair", 13, "The text from Java holds half of a surrogate pair.");
  ExpectFailure("getOtherHalf", 13, "The text from Java holds half of a surrogate pair.");
}

TEST_F(JavaValues, ThatAreMissingAreNull) {
  EXPECT_TRUE(Get("getNullText").IsNull());
  EXPECT_TRUE(Get("getNullNumber").IsNull());
  EXPECT_TRUE(Get("getNullBigDecimal").IsNull());
  EXPECT_TRUE(Get("getNullMoment").IsNull());
}

TEST_F(JavaValues, ThatAreMissingObjectsAreNoObject) {
  for (const char* const name : {"getNullObject", "getNullDate", "getNullValues"}) {
    const Variant value = Get(name);
    ASSERT_TRUE(value.IfObject()) << name;
    EXPECT_FALSE(*value.IfObject()) << name;
  }
}

TEST_F(JavaValues, OfAMethodWithoutAResultAreEmpty) { EXPECT_TRUE(Get("getNothing").IsEmpty()); }

TEST_F(JavaValues, OfDateAndTimeClassesAreMoments) {
  EXPECT_EQ(Get("getLocalDate"), Variant(DateTime::FromDate(2026, 11, 20)));
  EXPECT_EQ(Get("getLocalDateTime"), Variant(DateTime::FromSeconds(-2)));
  EXPECT_EQ(Get("getSqlDate"), Variant(DateTime::FromDate(2026, 7, 1)));
  EXPECT_EQ(Get("getTimestamp"), Variant(DateTime::FromDate(2026, 7, 1).PlusTime(14, 5, 9)));
}

TEST_F(JavaValues, OfJavaUtilDateAreDateObjects) {
  const Object date = Get("getDate").ToObject();
  EXPECT_EQ(date.Call("getyear"), Variant(126));
  EXPECT_EQ(date.Call("getMonth"), Variant(10));
  EXPECT_EQ(date.Call("getDate"), Variant(20));
  EXPECT_EQ(date.Call("getHours"), Variant(14));
  EXPECT_EQ(date.Call("getMinutes"), Variant(5));
  EXPECT_EQ(date.Call("getSeconds"), Variant(9));
  const Object none = Get("getNoDate").ToObject();
  EXPECT_EQ(none.Call("getYear"), Variant(0));
  EXPECT_EQ(none.Call("getMonth"), Variant(0));
}

TEST_F(JavaValues, OfDatesFollowTheirSetters) {
  const Object date = components.CreateObject("java:java.util.Date");
  date.Call("setDate", 1);
  date.Call("setMonth", 0);
  date.Call("setYear", -100);
  date.Call("setHours", 25);
  EXPECT_EQ(date.Call("getYear"), Variant(-100));
  EXPECT_EQ(date.Call("getDate"), Variant(2));
  EXPECT_EQ(date.Call("getHours"), Variant(1));
  date.Call("setYear", 8099);
  EXPECT_EQ(date.Call("getYear"), Variant(8099));
  EXPECT_EQ(date.Call("getMonth"), Variant(0));
}

TEST_F(JavaValues, OfArraysAndMapsAreRefused) {
  ExpectFailure("getArray", 13, "getArray gave a java.lang.String[], which the program cannot read;");
  ExpectFailure("getIntArray", 13, "getIntArray gave a int[], which the program cannot read;");
  ExpectFailure("getMap", 13, "which the program cannot read;");
}

TEST_F(JavaValues, OfCollectionsAreObjectsAndNoValues) {
  const Variant list = Get("getList");
  ASSERT_TRUE(list.IfObject());
  EXPECT_EQ(Raised([&] { (void)list.ToText(); }).Number(), 13);
}

}  // namespace
}  // namespace qmx::test
