#include "platform/system/text_files.h"

#include <gmock/gmock.h>

#include "platform/error.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class TextFilesOfWindows : public testing::Test {
 protected:
  TempFolder folder_;
  SystemTextFiles files_;
};

TEST_F(TextFilesOfWindows, HaveLinesThatEndInCrLf) {
  files_.OpenForAppend(folder_ / "tsmdm030.log", 1);
  files_.Print(1, "text");
  files_.Write(1, {"a", "b"});
  files_.Close(1);
  EXPECT_EQ(ReadFile(folder_ / "tsmdm030.log"), "text\r\n\"a\",\"b\"\r\n");
}

TEST_F(TextFilesOfWindows, ReadFieldsOfEitherLineEnd) {
  WriteFile(folder_ / "QMX_CAL.INI", "\"3\",x\r\n y\nz");
  files_.OpenForInput(folder_ / "QMX_CAL.INI", 1);
  for (const char* field : {"3", "x", "y", "z"}) EXPECT_EQ(files_.InputField(1), field);
  EXPECT_EQ(Raised([&] { files_.InputField(1); }).Number(), errors::kInputPastEnd);
  files_.Close(1);
}

TEST_F(TextFilesOfWindows, HaveNamesWithLettersOfAnyScript) {
  files_.OpenForAppend(folder_ / "Gr\u00F6\u00DFe \u65E5.log", 1);
  files_.Print(1, "text");
  files_.Close(1);
  EXPECT_TRUE(std::filesystem::exists(folder_.Path() / L"Gr\u00F6\u00DFe \u65E5.log"));
}

TEST_F(TextFilesOfWindows, FailWithTheClassicNumbers) {
  EXPECT_EQ(Raised([&] { files_.OpenForInput(folder_ / "none", 1); }).Number(), errors::kFileNotFound);
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(folder_ / "none\\log", 1); }).Number(), errors::kPathNotFound);
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(folder_.Path().string(), 1); }).Number(), errors::kPathFileAccess);
  EXPECT_EQ(Raised([&] { files_.OpenForAppend("NUL", 1); }).Number(), errors::kPathFileAccess);
  EXPECT_EQ(Raised([&] { files_.OpenForAppend(folder_ / std::string("a\0b", 3), 1); }).Number(),
            errors::kPathFileAccess);
}

}  // namespace
}  // namespace qmx::test
