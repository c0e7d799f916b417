#include "tools/qmxadmin/system/shown_characters.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

void ExpectCharacter(std::string_view text, std::size_t bytes, int width, bool printable) {
  const ShownCharacter first = ShownCharacters().FirstOf(text);
  EXPECT_EQ(first.bytes, bytes) << text;
  EXPECT_EQ(first.width, width) << text;
  EXPECT_EQ(first.printable, printable) << text;
}

TEST(AShownCharacter, HasItsBytesAndTheColumnsThatItTakes) {
  ExpectCharacter("ab", 1, 1, true);
  ExpectCharacter("üb", 2, 1, true);
  ExpectCharacter("█", 3, 1, true);
  ExpectCharacter("日本", 3, 2, true);
  ExpectCharacter("😀!", 4, 2, true);
  ExpectCharacter("\u0301x", 2, 0, true);  // an accent on the letter before
}

TEST(AShownCharacter, IsOneColumnThatCannotBeShownIfItIsNoneOrAControl) {
  for (const char* text : {"\x01", "\x1b[K", "\x7f", "\xff", "\xc3", "\xc3(", "\xe6\x97"}) {
    const ShownCharacter first = ShownCharacters().FirstOf(text);
    EXPECT_EQ(first.bytes, 1U);
    EXPECT_FALSE(first.printable);
  }
}

}  // namespace
}  // namespace qmx::test
