#include "platform/odbc/data_source_file.h"

#include <gmock/gmock.h>

#include "platform/error.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class ADataSourceFile : public testing::Test {
 protected:
  std::string Pairs(const std::string& text) {
    WriteFile(file_, text);
    return ReadDataSourceFile(file_);
  }
  void ExpectRefusal(const std::string& text, std::int32_t number, const std::string& description) {
    const Error error = Raised([&] { Pairs(text); });
    EXPECT_EQ(error.Number(), number);
    EXPECT_EQ(error.Description(), "The data source file " + file_ + description);
    EXPECT_EQ(error.DetailOf("file"), file_);
  }

  TempFolder folder_;
  std::string file_ = folder_ / "\u00F6rtlich \u0394.dsn";
};

TEST_F(ADataSourceFile, HasItsPairsInTheSectionOdbc) {
  EXPECT_EQ(Pairs("[ODBC]\nDRIVER=PostgreSQL Unicode\nUID=qmx\n"), "DRIVER=PostgreSQL Unicode;UID=qmx");
  EXPECT_EQ(Pairs("a=b\n[other]\nUID=nobody\n[odbc]\nUID=qmx\n[more]\nPWD=a;b\n[ Odbc ]\nPORT=1\n"), "UID=qmx;PORT=1");
}

TEST_F(ADataSourceFile, MayHaveCommentsEmptyLinesBlanksAndLineEndsOfWindows) {
  EXPECT_EQ(Pairs(" [ODBC] \r\n; a=b\r\n\r\n\t# PWD=a;b\r\n  UID \t=  q m x \r\nno pair\r\nPWD=\r\n"),
            "UID=q m x;PWD=");
}

TEST_F(ADataSourceFile, MayHaveValuesInBracesAndWithEqualsSigns) {
  EXPECT_EQ(Pairs("[ODBC]\nPWD={wild;{}}rose}\nUID=a=b\n"), "PWD={wild;{}}rose};UID=a=b");
}

TEST_F(ADataSourceFile, HasItsLettersInUtf8WithOrWithoutAByteOrderMark) {
  EXPECT_EQ(Pairs("[ODBC]\nPWD=Gr\u00F6\u00DFe \u0416\n"), "PWD=Gr\u00F6\u00DFe \u0416");
  EXPECT_EQ(Pairs("\xEF\xBB\xBF[ODBC]\r\nUID=\u65E5\r\n"), "UID=\u65E5");
}

TEST_F(ADataSourceFile, InAnotherEncodingIsRefused) {
  ExpectRefusal(std::string("\xFF\xFE[\0]\0\n\0", 8), 5, ", line 1: the text is UTF-16. Save it as UTF-8.");
  ExpectRefusal(
      "[ODBC]\nPWD=Gr\xF6\xDF"
      "e\n",
      5, ", line 2: the text is not UTF-8. Save it as UTF-8.");
}

TEST_F(ADataSourceFile, NeedsBracesAroundASemicolon) {
  ExpectRefusal("[ODBC]\nUID=qmx\nPWD = hush;hush=hush\n", 5,
                ", line 3: the value holds a \";\". Put it in braces, with \"}\" doubled inside.");
}

TEST_F(ADataSourceFile, WithoutPairsIsRefused) {
  for (const char* text : {"", "UID=qmx\n", "[ODBC]\n", "[other]\nUID=qmx\n", "[ODBC\xC3\x9F]\nUID=qmx\n"})
    ExpectRefusal(text, -2147467259, " cannot be read or has no section [ODBC].");
}

TEST_F(ADataSourceFile, ThatIsMissingIsNamed) {
  for (const std::string& missing : {folder_ / "none.dsn", std::string("none.dsn"), folder_.Path().string()}) {
    EXPECT_EQ(Raised([&] { ReadDataSourceFile(missing); }).Description(),
              "The data source file " + missing + " cannot be read or has no section [ODBC].");
  }
}

}  // namespace
}  // namespace qmx::test
