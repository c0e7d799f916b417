#include "platform/join.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/trim.h"

namespace qmx::test {
namespace {

TEST(Lists, HaveSeparatorsBetweenTheirItemsOnly) {
  EXPECT_EQ(Joined(std::vector<std::string>{"A", "B", "C"}, ", "), "A, B, C");
  EXPECT_EQ(Joined(std::vector<std::string>{"A"}, ", "), "A");
  EXPECT_EQ(Joined(std::vector<std::string>{}, ", "), "");
}

TEST(Lists, KeepItemsThatAreEmpty) { EXPECT_EQ(Joined(std::vector<std::string>{"", "B", ""}, ","), ",B,"); }

TEST(Lists, AreMadeOfWhatEachItemGives) {
  EXPECT_EQ(Joined(std::vector<int>{1, 2}, " or ", [](int number) { return std::to_string(number); }), "1 or 2");
}

TEST(Lists, GrowByOneItemAtATime) {
  std::string list;
  AppendItem(list, ", ", "A");
  EXPECT_EQ(list, "A");
  AppendItem(list, ", ", "B");
  EXPECT_EQ(list, "A, B");
}

TEST(Trimming, RemovesTheBlanksAroundATextAndNoneWithin) {
  EXPECT_EQ(Trimmed("  a b  "), "a b");
  EXPECT_EQ(Trimmed("a"), "a");
  EXPECT_EQ(Trimmed("   "), "");
  EXPECT_EQ(Trimmed(""), "");
}

TEST(Trimming, RemovesOtherCharactersOnlyIfTheyAreGiven) {
  EXPECT_EQ(Trimmed("\t a \t"), "\t a \t");
  EXPECT_EQ(Trimmed("\t a \r", " \t\r"), "a");
}

}  // namespace
}  // namespace qmx::test
