#include "platform/json_line.h"

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

namespace qmx::test {
namespace {

TEST(AJsonLine, HasItsMembersInTheirOrder) {
  EXPECT_EQ(JsonLine::Object().Text(), "{}");
  EXPECT_EQ(JsonLine::Array().Text(), "[]");
  EXPECT_EQ(
      JsonLine::Object().Add("b", "text").Add("a", -7).AddNull("c").Add("d", std::optional<std::int64_t>()).Text(),
      R"({"b":"text","a":-7,"c":null,"d":null})");
}

TEST(AJsonLine, HoldsObjectsAndArrays) {
  const JsonLine inner = JsonLine::Object().Add("n", 1);
  EXPECT_EQ(JsonLine::Object().Add("list", JsonLine::Array().Add(inner).Add(inner)).Add("e", JsonLine::Array()).Text(),
            R"({"list":[{"n":1},{"n":1}],"e":[]})");
}

TEST(AJsonLine, StaysOneLineWhateverItsTextsHold) {
  std::string text;
  for (int c = 0; c < 128; ++c) text += static_cast<char>(c);
  text += "ä€\xF0\x9F\x98\x80";
  const std::string line = JsonLine::Object().Add("t", text).Text();
  EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos);
  text.replace(0, 1, "\xEF\xBF\xBD");  // a NUL is replaced
  EXPECT_EQ(nlohmann::json::parse(line)["t"], text);
}

TEST(AJsonLine, ShowsInvalidUtf8AsAReplacementCharacter) {
  EXPECT_EQ(JsonLine::Object().Add("t\xFF", "a\xC3").Text(), "{\"t\xEF\xBF\xBD\":\"a\xEF\xBF\xBD\"}");
}

TEST(AJsonLine, TakesValuesThatAreJsonAlready) {
  EXPECT_EQ(JsonLine::Array().AddJson("7").AddJson(JsonLine::TextValue("a \"b\"")).Text(), R"([7,"a \"b\""])");
  EXPECT_EQ(JsonLine::Object().AddJson("n", JsonLine::NumberValue(0.5)).Text(), R"({"n":0.5})");
}

TEST(AJsonLine, ShowsNumbersInTheirShortestFormThatReadsBack) {
  EXPECT_EQ(JsonLine::NumberValue(7), "7.0");
  EXPECT_EQ(JsonLine::NumberValue(-0.1), "-0.1");
  EXPECT_EQ(JsonLine::NumberValue(1e300), "1e+300");
  EXPECT_EQ(JsonLine::NumberValue(123456789.125), "123456789.125");
  EXPECT_EQ(JsonLine::NumberValue(std::nan("")), "null");
  EXPECT_EQ(JsonLine::NumberValue(-HUGE_VAL), "null");
}

}  // namespace
}  // namespace qmx::test
