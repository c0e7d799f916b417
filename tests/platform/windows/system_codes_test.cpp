#include "platform/windows/system_codes.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <cerrno>
#include <map>

namespace qmx::test {
namespace {

using testing::EndsWith;

TEST(SystemCodes, HaveTheirErrnoValues) {
  const std::map<std::uint32_t, int> expected = {{ERROR_SUCCESS, 0},
                                                 {ERROR_FILE_NOT_FOUND, ENOENT},
                                                 {ERROR_PATH_NOT_FOUND, ENOENT},
                                                 {ERROR_ACCESS_DENIED, EACCES},
                                                 {ERROR_SHARING_VIOLATION, EACCES},
                                                 {ERROR_WRITE_PROTECT, EROFS},
                                                 {ERROR_DIRECTORY, ENOTDIR},
                                                 {ERROR_DISK_FULL, ENOSPC},
                                                 {1295, ENOSPC},
                                                 {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG},
                                                 {ERROR_INVALID_NAME, EINVAL},
                                                 {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
                                                 {ERROR_BROKEN_PIPE, EPIPE},
                                                 {ERROR_CRC, EIO}};
  for (const auto& [code, value] : expected) EXPECT_EQ(ErrnoOf(code), value) << code;
}

TEST(SystemCodes, OfTheLastFailureAreTheThreadsOwn) {
  SetLastError(ERROR_DISK_FULL);
  EXPECT_EQ(LastErrno(), ENOSPC);
}

TEST(SystemCodes, HaveAMessageOnOneLineWithTheNumber) {
  const std::string message = SystemMessage(ERROR_FILE_NOT_FOUND);
  EXPECT_THAT(message, EndsWith(" (2)"));
  EXPECT_GT(message.size(), 10U);
  EXPECT_EQ(message.find_first_of("\r\n"), std::string::npos);
  EXPECT_EQ(SystemMessage(0x2FFFFFFF), "Windows has no text for this error. (805306367)");
}

}  // namespace
}  // namespace qmx::test
