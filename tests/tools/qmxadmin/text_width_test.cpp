#include "tools/qmxadmin/text_width.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

TEST(TextWidth, CountsWhatALetterTakesOnATerminal) {
  EXPECT_EQ(TextWidth(""), 0);
  EXPECT_EQ(TextWidth("tsmdm030"), 8);
  EXPECT_EQ(TextWidth("Müller"), 6);
  EXPECT_EQ(TextWidth("Mu\xcc\x88ller"), 6);  // the dots are a character of their own
  EXPECT_EQ(TextWidth("日本"), 4);
}

TEST(TextWidth, CountsAByteThatIsNoLetterAsOne) {
  EXPECT_EQ(TextWidth("M\xfcller"), 6);
  EXPECT_EQ(TextWidth(std::string_view("a\0b", 3)), 3);
  EXPECT_EQ(TextWidth("\xc3"), 1);
}

TEST(TextWidth, ATextThatFitsIsNotCut) {
  EXPECT_EQ(CutToWidth("Müller", 6), "Müller");
  EXPECT_EQ(CutToWidth("", 0), "");
}

TEST(TextWidth, ATextThatDoesNotFitEndsInAnEllipsisWithinTheWidth) {
  EXPECT_EQ(CutToWidth("Service Types", 8), "Service…");
  EXPECT_EQ(CutToWidth("Müller", 3), "Mü…");
  EXPECT_EQ(CutToWidth("Müller", 1), "…");
  EXPECT_EQ(CutToWidth("Müller", 0), "");
  EXPECT_EQ(CutToWidth("日本語", 4), "日…");  // a letter of two columns is not halved
}

TEST(TextWidth, ControlCharactersAndBrokenLettersBecomeBlanks) {
  EXPECT_EQ(Printable("one\ntwo\tthree"), "one two three");
  EXPECT_EQ(Printable("\033[31mred"), " [31mred");
  EXPECT_EQ(Printable("M\xfcller, Müller"), "M ller, Müller");
  EXPECT_EQ(Printable(std::string_view("a\0b", 3)), "a b");
}

}  // namespace
}  // namespace qmx::test
