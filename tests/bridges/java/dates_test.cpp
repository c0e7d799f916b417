// The java.util.Date of a getter.
#include <cmath>
#include <random>

#include "tests/bridges/java/java_components.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

std::string Shown(const Object& date) {
  std::string text;
  for (const char* const getter : {"getYear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds"}) {
    text += (text.empty() ? "" : " ") + date.Call(std::string_view(getter)).ToText();
  }
  return text;
}

class JavaDates : public JavaComponents {
 protected:
  Object DateOf(const char* getter) { return dates.Call(std::string_view(getter)).ToObject(); }
  Object dates = components.CreateObject("bridge.Dates");
};

// Of each zone the moments around its changes of this century and of the last, and others of all years.
TEST_F(JavaDates, HaveTheFieldsThatTheirOwnGettersGive) {
  std::mt19937_64 dice(1);
  constexpr double kDay = 86400000;
  const auto within = [&](double from, double to) {
    return from + (to - from) * static_cast<double>(dice() % 1000000) / 1e6;
  };
  for (const char* const zone : {"UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kathmandu", "Africa/Monrovia",
                                 "Australia/Lord_Howe", "Pacific/Apia"}) {
    dates.Call("setZone", zone);
    for (int i = 0; i < 400; ++i) {
      const double days = i % 4 == 0   ? within(-800000, 3000000)  // since the year -220
                          : i % 4 == 1 ? within(-142000, -140000)  // 1582, when the calendar changed
                          : i % 4 == 2 ? within(700, 1500)         // 1972 and 1973
                                       : within(18000, 24000);
      dates.Call("setTime", std::floor(days * kDay));
      ASSERT_EQ(Shown(DateOf("getCopy")), dates.Call("getShown").ToText()) << zone << ", day " << days;
    }
  }
  dates.Call("setZone", "");
}

TEST_F(JavaDates, OfTheFirstMomentSinceWhichZonesHaveWholeMinutesHaveTheirFields) {
  dates.Call("setZone", "UTC");
  for (const double time : {94694400000.0, 94694399999.0, 94694400001.0, -1.0, 0.0}) {
    dates.Call("setTime", time);
    EXPECT_EQ(Shown(DateOf("getCopy")), dates.Call("getShown").ToText()) << time;
  }
  dates.Call("setZone", "");
}

TEST_F(JavaDates, AreTheObjectsOfJavaThemselves) {
  DateOf("getDate").Call("setHours", 7);
  EXPECT_EQ(DateOf("getDate").Call("getHours"), Variant(7));
  EXPECT_EQ(dates.Call("isDate", DateOf("getDate")), Variant(true));
  EXPECT_EQ(dates.Call("isDate", DateOf("getCopy")), Variant(false));
}

TEST_F(JavaDates, FollowAChangeThroughAnotherReference) {
  const Object one = DateOf("getDate");
  const Object other = DateOf("getDate");
  EXPECT_EQ(one.Call("getYear"), Variant(70));
  other.Call("setYear", 126);
  EXPECT_EQ(one.Call("getYear"), Variant(126));
  EXPECT_EQ(one.Call("getTime"), other.Call("getTime"));
}

TEST_F(JavaDates, ThatAreHeldTogetherStayApart) {
  std::vector<Object> held;
  for (int i = 0; i < 100; ++i) {
    dates.Call("setTime", i * 86400000.0 + 43200000);
    held.push_back(DateOf("getCopy"));
  }
  held.erase(held.begin() + 10, held.begin() + 20);
  dates.Call("setTime", 0);
  held.push_back(DateOf("getDate"));
  EXPECT_EQ(held[9].Call("getTime"), Variant(820800000));
  EXPECT_EQ(held[10].Call("getTime"), Variant(1771200000));
  EXPECT_EQ(held[89].Call("getTime"), Variant(8596800000.0));
  EXPECT_EQ(dates.Call("isDate", held[90]), Variant(true));
  EXPECT_EQ(Shown(held[89]), "70 3 10 13 0 0");
}

TEST_F(JavaDates, OfGettersThatGiveASubclassAreMoments) {
  dates.Call("setTime", 1782907509000.0);
  EXPECT_EQ(dates.Call("getTimestampAsDate"), Variant(DateTime::FromDate(2026, 7, 1).PlusTime(14, 5, 9)));
  EXPECT_EQ(Shown(DateOf("getDateAsObject")), "126 6 1 14 5 9");
}

TEST_F(JavaDates, OfAGetterThatFailsAreErrors) {
  const Error error = Raised([&] { dates.Call("getFailing"); });
  EXPECT_EQ(error.Description(), "java.lang.IllegalStateException: no date");
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_EQ(Shown(DateOf("getDate")), "70 0 1 1 0 0");
}

}  // namespace
}  // namespace qmx::test
