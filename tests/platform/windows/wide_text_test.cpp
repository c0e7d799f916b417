#include "platform/windows/wide_text.h"

#include <gmock/gmock.h>

namespace qmx::test {
namespace {

TEST(WideText, IsTheUtf16OfUtf8AndBack) {
  EXPECT_EQ(WideText("Gr\u00F6\u00DFe \u65E5\U0001F600"), L"Gr\u00F6\u00DFe \u65E5\U0001F600");
  EXPECT_EQ(NarrowText(L"Gr\u00F6\u00DFe \u65E5\U0001F600"), "Gr\u00F6\u00DFe \u65E5\U0001F600");
  EXPECT_EQ(WideText(""), L"");
  EXPECT_EQ(NarrowText(L""), "");
}

TEST(WideText, HasAReplacementForWhatIsNotValid) {
  EXPECT_EQ(WideText("a\xFFz"), L"a\uFFFDz");
  EXPECT_EQ(NarrowText(std::wstring(1, wchar_t{0xD800})), "\uFFFD");
}

}  // namespace
}  // namespace qmx::test
