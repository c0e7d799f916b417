#include "platform/windows/file_form.h"

#include <gmock/gmock.h>

namespace qmx::test {
namespace {

constexpr DWORD kReparsePoint = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;

TEST(FileForm, IsPlainForAFileOfItsOwn) {
  EXPECT_EQ(FormOf(FILE_ATTRIBUTE_ARCHIVE, 0), FileForm::Plain);
  EXPECT_EQ(FormOf(FILE_ATTRIBUTE_ARCHIVE, IO_REPARSE_TAG_SYMLINK), FileForm::Plain);
}

TEST(FileForm, IsALinkForWhatNamesAnotherFile) {
  EXPECT_EQ(FormOf(kReparsePoint, 0xA000000C), FileForm::Link);  // a symbolic link
  EXPECT_EQ(FormOf(kReparsePoint, 0xA0000003), FileForm::Link);  // a mounted folder
  EXPECT_EQ(FormOf(kReparsePoint, 0xA000001D), FileForm::Link);  // a symbolic link of a Linux subsystem
}

TEST(FileForm, IsFilteredForAFileWhoseContentIsElsewhere) {
  EXPECT_EQ(FormOf(kReparsePoint, 0x80000013), FileForm::Filtered);  // deduplicated
  EXPECT_EQ(FormOf(kReparsePoint, 0x9000001A), FileForm::Filtered);  // of a cloud
}

}  // namespace
}  // namespace qmx::test
