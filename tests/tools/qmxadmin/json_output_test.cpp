#include "tools/qmxadmin/json_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace qmx::test {
namespace {

TEST(JsonOutput, IsAnObjectARowOnALineOfItsOwn) {
  const Listing listing = {{{"table", "TABLE"}, {"rows", "ROWS"}},
                           {{"tsmdm030", std::int32_t{12}}, {"tsmdm100", Variant::Null()}}};
  EXPECT_EQ(JsonArray(listing),
            "[\n"
            "  {\"table\":\"tsmdm030\",\"rows\":12},\n"
            "  {\"table\":\"tsmdm100\",\"rows\":null}\n"
            "]\n");
}

TEST(JsonOutput, OfNothingIsAnEmptyArray) {
  EXPECT_EQ(nlohmann::json::parse(JsonArray({{{"table", "TABLE"}}, {}})), nlohmann::json::array());
}

TEST(JsonOutput, HasColumnsThatNoTableShows) {
  EXPECT_EQ(JsonText(JsonObject({{"table", ""}}, {"tsmdm030"})), "{\"table\":\"tsmdm030\"}");
}

TEST(JsonOutput, WritesEachKindOfValue) {
  const std::vector<ListingColumn> columns = {{"v", "V"}};
  const auto written = [&](Variant value) { return JsonText(JsonObject(columns, {std::move(value)})); };
  EXPECT_EQ(written(true), "{\"v\":true}");
  EXPECT_EQ(written(std::int16_t{-2}), "{\"v\":-2}");
  EXPECT_EQ(written(2.5), "{\"v\":2.5}");
  EXPECT_EQ(written(400.0), "{\"v\":400}");
  EXPECT_EQ(written(DateTime::FromDate(2026, 11, 21).PlusTime(14, 5, 9)), "{\"v\":\"2026-11-21 14:05:09\"}");
  EXPECT_EQ(written(DateTime::FromDate(2026, 11, 21)), "{\"v\":\"2026-11-21 00:00:00\"}");
  EXPECT_EQ(written(Variant()), "{\"v\":null}");
}

TEST(JsonOutput, EscapesWhatJsonCannotHold) {
  const std::vector<ListingColumn> columns = {{"v", "V"}};
  EXPECT_EQ(JsonText(JsonObject(columns, {"a\"b\\c\nd\033"})), "{\"v\":\"a\\\"b\\\\c\\nd\\u001b\"}");
  EXPECT_EQ(JsonText(JsonObject(columns, {"M\xfcller"})), "{\"v\":\"M\xef\xbf\xbdller\"}");
  EXPECT_EQ(JsonText(JsonObject(columns, {"Müller"})), "{\"v\":\"Müller\"}");
}

}  // namespace
}  // namespace qmx::test
