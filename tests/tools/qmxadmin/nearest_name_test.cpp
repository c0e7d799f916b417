#include "tools/qmxadmin/nearest_name.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

const std::vector<std::string> kNames = {"calendar", "check", "copy", "init", "status", "verify"};

TEST(TheNearestName, IsOneLetterAway) {
  EXPECT_EQ(NearestName("statu", kNames), "status");
  EXPECT_EQ(NearestName("statuss", kNames), "status");
  EXPECT_EQ(NearestName("stetus", kNames), "status");
}

TEST(TheNearestName, HasTwoLettersSwapped) {
  EXPECT_EQ(NearestName("stauts", kNames), "status");
  EXPECT_EQ(NearestName("cehck", kNames), "check");
}

TEST(TheNearestName, IsTheOneWithTheFewestChanges) { EXPECT_EQ(NearestName("coyp", {"copies", "copy"}), "copy"); }

TEST(TheNearestName, IsEmptyIfNoneIsNear) {
  EXPECT_EQ(NearestName("destroy", kNames), "");
  EXPECT_EQ(NearestName("x", kNames), "");
  EXPECT_EQ(NearestName("", kNames), "");
  EXPECT_EQ(NearestName("status", {}), "");
}

TEST(TheNearestName, IsNotLookedForInALongText) {
  EXPECT_EQ(NearestName("Provider=SQLite;Data Source=" + std::string(100000, 'x'), kNames), "");
}

}  // namespace
}  // namespace qmx::test
