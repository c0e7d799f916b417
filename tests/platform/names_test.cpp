#include "platform/names.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

TEST(Names, IgnoreTheCaseOfAsciiLettersOnly) {
  EXPECT_TRUE(SameName("TSMDM030", "tsmdm030"));
  EXPECT_TRUE(SameName("Größe", "GRößE"));
  EXPECT_FALSE(SameName("Größe", "GRÖSSE"));
  EXPECT_FALSE(SameName("Ä", "ä"));
  EXPECT_FALSE(SameName("@[`{", "`{@["));  // the neighbours of the letters
}

TEST(Names, KeepTheBytesOfOtherLettersWhenTheyAreFolded) {
  EXPECT_EQ(FoldName("Straße ÄÖÜ €"), "straße ÄÖÜ €");
  EXPECT_EQ(FoldName("AZ@[`{az"), "az@[`{az");
}

}  // namespace
}  // namespace qmx::test
