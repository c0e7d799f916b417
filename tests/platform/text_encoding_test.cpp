#include "platform/text_encoding.h"

#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

TEST(TextEncoding, IsPlainAsciiWithEveryCharacterFrom1To127AtEveryPlaceOfEveryLength) {
  for (std::size_t size = 0; size <= 40; ++size) {
    EXPECT_TRUE(IsPlainAscii(std::string(size, 'a'))) << size;
    for (std::size_t place = 0; place < size; ++place) {
      for (int code = 0; code < 256; ++code) {
        std::string text(size, code % 2 == 0 ? '\x01' : '\x7F');
        text[place] = static_cast<char>(code);
        ASSERT_EQ(IsPlainAscii(text), code >= 1 && code <= 127) << size << ", " << place << ", " << code;
      }
    }
  }
}

TEST(TextEncoding, IsPlainAsciiWithoutReadingPastItsEnd) {
  const std::string text = "0123456789\xFF\0\xFF";
  for (std::size_t size = 0; size <= 10; ++size) EXPECT_TRUE(IsPlainAscii(std::string_view(text).substr(0, size)));
  EXPECT_TRUE(IsPlainAscii(std::string_view()));
}

TEST(TextEncoding, HasNoFlawInTheCharactersOfEveryLength) {
  EXPECT_EQ(FindFlaw("Grüße, 5 €, 😀"), kNone);
  EXPECT_EQ(FindFlaw("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"),
            kNone);
}

TEST(TextEncoding, HasItsFirstFlawWhereACharacterIsBroken) {
  for (const char* text :
       {"ab\x80", "ab\xC3", "ab\xC3(", "ab\xC0\xAF", "ab\xE0\x80\xAF", "ab\xED\xA0\x80", "ab\xF4\x90\x80\x80",
        "ab\xF0\x80\x80\xAF", "ab\xFF", "ab\xE4\xF6\xFC and much more behind it"}) {
    EXPECT_EQ(FindFlaw(text), 2u) << text;
  }
  EXPECT_EQ(FindFlaw("ü\xE4"), 2u);
}

TEST(TextEncoding, HasAFlawWhereItHoldsANul) {
  EXPECT_EQ(FindFlaw(std::string_view("ab\0cd", 5)), 2u);
  EXPECT_EQ(FindFlaw(std::string_view("ü\0\xE4", 4)), 2u);
  EXPECT_EQ(FindFlaw(std::string_view("\xE4ü\0", 4)), 0u);
  EXPECT_EQ(FindFlaw(std::string_view("a text of sixteen\0", 18)), 17u);
}

TEST(TextEncoding, IsRefusedWithTheByteOfItsFlaw) {
  const Error notUtf8 = Raised([] { RequireFlawless("M\xFCller", "Somebody"); });
  EXPECT_EQ(notUtf8.Number(), 13);
  EXPECT_EQ(notUtf8.Source(), "Somebody");
  EXPECT_EQ(notUtf8.Description(), "Type mismatch: the text is no valid UTF-8 from byte 2 on.");
  EXPECT_EQ(Raised([] { RequireFlawless(std::string_view("Müller\0", 8), "Somebody"); }).Description(),
            "Type mismatch: the text holds a NUL character at byte 8.");
  RequireFlawless("Müller", "Somebody");
}

TEST(TextEncoding, IsShownWithReplacementCharactersForItsFlaws) {
  EXPECT_EQ(WithReplacements("Müller"), "Müller");
  EXPECT_EQ(WithReplacements("M\xFCller"), "M\uFFFDller");
  EXPECT_EQ(WithReplacements(std::string_view("a\0b\xE4", 4)), "a\uFFFDb\uFFFD");
  EXPECT_EQ(WithReplacements(""), "");
}

}  // namespace
}  // namespace qmx::test
