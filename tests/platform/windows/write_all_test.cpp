#include "platform/system/write_all.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdio>

#include "platform/system/plain_file.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(Writing, WritesTheWholeTextAsItIs) {
  const TempFolder folder;
  const PlainFile file = OpenPlainFile(folder / "text", FileUse::Append);
  const std::string text = std::string(3 << 20, 'x') + "\n\r\n\u65E5";
  WriteAll(file.descriptor, text);
  EXPECT_TRUE(ReadFile(folder / "text") == text);
}

TEST(Writing, GivesUpWithoutADescriptor) {
  WriteAll(123, "text");
  EXPECT_EQ(WriteAtOnce(123, "text"), EBADF);
}

}  // namespace
}  // namespace qmx::test
