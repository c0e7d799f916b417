// How this build makes std::filesystem::path of the program's texts.
#include <gtest/gtest.h>

#include <filesystem>

namespace qmx::test {
namespace {

TEST(Utf8Paths, AreMadeOfUtf8TextsAndBecomeThemAgain) {
  const std::filesystem::path path("C:\\Gr\u00F6\u00DFe \u65E5\U0001F600");
  EXPECT_EQ(path.native(), L"C:\\Gr\u00F6\u00DFe \u65E5\U0001F600");
  EXPECT_EQ(path.string(), "C:\\Gr\u00F6\u00DFe \u65E5\U0001F600");
}

TEST(Utf8Paths, MayBeEmptyAndHaveWhatIsNotUtf8Replaced) {
  EXPECT_EQ(std::filesystem::path("").native(), L"");
  EXPECT_EQ(std::filesystem::path("a\xFF").native(), L"a\uFFFD");
}

}  // namespace
}  // namespace qmx::test
