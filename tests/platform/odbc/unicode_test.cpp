#include "platform/odbc/unicode.h"

#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

TEST(OdbcUnicode, TextsGoBothWays) {
  EXPECT_EQ(ToWide("aé€"), (WideText{0x61, 0xE9, 0x20AC}));
  EXPECT_EQ(FromWide(WideText{0x61, 0xE9, 0x20AC}), "aé€");
  EXPECT_EQ(ToWide(""), WideText());
}

TEST(OdbcUnicode, CharactersBeyondTheFirstPlaneArePairs) {
  EXPECT_EQ(ToWide("🙂"), (WideText{0xD83D, 0xDE42}));
  EXPECT_EQ(FromWide(WideText{0xD83D, 0xDE42}), "🙂");
  EXPECT_EQ(FromWide(WideText{0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF");
}

TEST(OdbcUnicode, HalfAPairIsReplaced) {
  EXPECT_EQ(FromWide(WideText{0xD83D}), "\xEF\xBF\xBD");
  EXPECT_EQ(FromWide(WideText{0xDE42, 0x61}),
            "\xEF\xBF\xBD"
            "a");
  EXPECT_EQ(FromWide(WideText{0xD83D, 0x61}),
            "\xEF\xBF\xBD"
            "a");
}

TEST(OdbcUnicode, WhatIsNoUtf8IsATypeMismatchThatSaysWhere) {
  for (const char* text : {"ab\x80", "ab\xC3", "ab\xC3(", "ab\xC0\xAF", "ab\xE0\x80\xAF", "ab\xED\xA0\x80",
                           "ab\xF4\x90\x80\x80", "ab\xF0\x80\x80\xAF", "ab\xFF"}) {
    const Error error = Raised([&] { ToWide(text); });
    EXPECT_EQ(error.Number(), 13) << text;
    EXPECT_EQ(error.Description(), "Type mismatch: the text is no valid UTF-8 from byte 3 on.");
  }
}

}  // namespace
}  // namespace qmx::test
