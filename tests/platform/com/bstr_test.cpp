#include "platform/com/bstr.h"

#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

constexpr char kUtf8[] = "Gr\xC3\xBC\xC3\x9F Gott \xE2\x82\xAC \xF0\x9F\x98\x80";
constexpr wchar_t kUtf16[] = L"Gr\x00FC\x00DF Gott \x20AC \xD83D\xDE00";

TEST(AText, BecomesUtf16) {
  EXPECT_EQ(Wide(kUtf8), kUtf16);
  EXPECT_EQ(Wide("plain"), L"plain");
  EXPECT_EQ(Wide(""), L"");
}

TEST(AText, BecomesUtf8) {
  EXPECT_EQ(Utf8(kUtf16), kUtf8);
  EXPECT_EQ(Utf8(L"plain"), "plain");
  EXPECT_EQ(Utf8(L""), "");
}

TEST(AText, ComesBackWithEveryCharacter) {
  std::wstring all;
  for (unsigned character = 1; character < 0x10000; ++character) {
    if (character < 0xD800 || character > 0xDFFF) all += static_cast<wchar_t>(character);
  }
  EXPECT_EQ(Wide(Utf8(all)), all);
}

TEST(AText, WhoseLastAsciiCharacterIsFollowedByTheFirstOtherIsConverted) {
  EXPECT_EQ(Utf8(L"\x7F"), "\x7F");
  EXPECT_EQ(Utf8(L"\x80"), "\xC2\x80");
}

TEST(AText, WithHalfACharacterIsRefused) {
  for (const wchar_t* text : {L"ab\xD83D", L"ab\xD83Dx", L"ab\xDE00"}) {
    const Error error = Raised([&] { Utf8(text); });
    EXPECT_EQ(error.Number(), 13);
    EXPECT_EQ(error.Description(), "Type mismatch: the text is no valid UTF-16 from character 3 on.");
  }
}

TEST(AText, WhoseLastHalfOfACharacterLiesBehindItsEndIsRefused) {
  EXPECT_EQ(Raised([] { Utf8(std::wstring_view(L"a\xD83D\xDE00", 2)); }).Description(),
            "Type mismatch: the text is no valid UTF-16 from character 2 on.");
}

TEST(AText, WithANulIsRefused) {
  const Error error = Raised([] { Utf8(std::wstring_view(L"a\0b", 3)); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Description(), "Type mismatch: the text holds a NUL character at character 2.");
}

TEST(AText, ThatIsShownHasReplacementsForItsFlaws) {
  EXPECT_EQ(Utf8WithReplacements(std::wstring_view(L"a\0b\xD83D", 4)),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(Wide("a\xFF"), L"a\xFFFD");
}

TEST(ABstr, HoldsTheText) {
  const OwnedBstr text(NewBstr(kUtf8));
  EXPECT_EQ(text.View(), kUtf16);
}

TEST(ABstr, HoldsANul) {
  const OwnedBstr text(NewBstr(std::string_view("a\0b", 3)));
  EXPECT_EQ(text.View(), std::wstring_view(L"a\0b", 3));
}

TEST(ABstr, ThatIsNullIsEmpty) { EXPECT_EQ(View(nullptr), L""); }

TEST(ABstr, OfAnEmptyTextIsNotNull) {
  const BSTR text = NewBstr("");
  EXPECT_NE(text, nullptr);
  SysFreeString(text);
}

}  // namespace
}  // namespace qmx::test
