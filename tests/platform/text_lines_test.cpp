#include "platform/text_lines.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <vector>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextLinesOfAFile : public testing::Test {
 protected:
  std::vector<std::string> Lines(const std::string& text) {
    WriteFile(folder_ / "file", text);
    TextLines lines(folder_ / "file");
    EXPECT_TRUE(lines.IsOpen());
    std::vector<std::string> read;
    while (lines.Next()) {
      read.emplace_back(lines.Line());
      EXPECT_EQ(lines.Number(), static_cast<int>(read.size()));
      EXPECT_FALSE(lines.IsUtf16());
    }
    EXPECT_TRUE(lines.IsAtEnd());
    return read;
  }
  bool IsUtf16(const std::string& text) {
    WriteFile(folder_ / "file", text);
    TextLines lines(folder_ / "file");
    lines.Next();
    return lines.IsUtf16();
  }

  TempFolder folder_;
};

TEST_F(TextLinesOfAFile, HaveNoBlanksAroundThemAndNoLineEnds) {
  EXPECT_THAT(Lines(" a b \t\r\n\n\tc\r\nd"), ElementsAre("a b", "", "c", "d"));
  EXPECT_THAT(Lines(""), IsEmpty());
}

TEST_F(TextLinesOfAFile, HaveNoByteOrderMarkAtTheBeginning) {
  EXPECT_THAT(Lines("\xEF\xBB\xBF"
                    " a\nb"),
              ElementsAre("a", "b"));
  EXPECT_THAT(Lines("\xEF\xBB\xBF"), ElementsAre(""));
  EXPECT_THAT(Lines("a\n\xEF\xBB\xBF"
                    "b"),
              ElementsAre("a",
                          "\xEF\xBB\xBF"
                          "b"));
}

TEST_F(TextLinesOfAFile, MeanNothingInUtf16) {
  EXPECT_TRUE(
      IsUtf16(std::string("\xFF\xFE"
                          "a\0\n\0",
                          6)));
  EXPECT_TRUE(IsUtf16(std::string("\xFE\xFF\0a\0\n", 6)));
  EXPECT_FALSE(
      IsUtf16("\xEF\xBB\xBF"
              "a\n"));
  EXPECT_FALSE(IsUtf16("a\n\xFF\xFE"));
}

TEST_F(TextLinesOfAFile, AreNoneIfTheFileCannotBeRead) {
  TextLines missing(folder_ / "none");
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(missing.IsOpen());
  EXPECT_FALSE(missing.Next());
  EXPECT_FALSE(missing.IsAtEnd());
  TextLines folder(folder_.Path());
  EXPECT_FALSE(folder.Next());
  EXPECT_FALSE(folder.IsAtEnd());
}

}  // namespace
}  // namespace qmx::test
