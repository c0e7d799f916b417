// Windows replaces no file that a program has open and does not share for that, as most programs do.
#include <gmock/gmock.h>
#include <windows.h>

#include <thread>

#include "platform/error.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"
#include "tools/qmxadmin/runs/output_file.h"
#include "tools/qmxadmin/system/rename_over.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

class AFileThatIsOpen : public testing::Test {
 protected:
  AFileThatIsOpen() {
    WriteFile(path_, "old");
    const std::filesystem::path path = path_;
    reader_ = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(reader_, INVALID_HANDLE_VALUE);
  }
  void LetGo() { CloseHandle(reader_); }

  const TempFolder folder_;
  const std::string path_ = folder_ / "report.html";
  HANDLE reader_ = INVALID_HANDLE_VALUE;
};

TEST_F(AFileThatIsOpen, IsReplacedWhenItsReaderLetsGo) {
  WriteFile(folder_ / "new", "new");
  std::thread reader([this] {
    Sleep(100);  // a few attempts; nothing depends on their number
    LetGo();
  });
  EXPECT_EQ(RenameOver(folder_ / "new", path_, std::chrono::minutes(5)), "");
  reader.join();
  EXPECT_EQ(ReadFile(path_), "new");
}

TEST_F(AFileThatIsOpen, StaysAsItWasIfItsReaderDoesNot) {
  const std::string description = Raised([&] { WriteOutputFile(path_, "new"); }).Description();
  EXPECT_THAT(description, AllOf(StartsWith("The file \"" + path_ +
                                            "\" cannot be written: another program may have it "
                                            "open: "),
                                 testing::AnyOf(EndsWith("(5)."), EndsWith("(32)."))));
  LetGo();
  EXPECT_EQ(ReadFile(path_), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 1);
}

}  // namespace
}  // namespace qmx::test
