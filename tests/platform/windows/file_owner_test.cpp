#include "platform/windows/file_owner.h"

#include <gmock/gmock.h>

#include "platform/windows/handle.h"
#include "platform/windows/user.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(FileOwner, IsNotStrangeForAFileOfOnesOwn) {
  const TempFolder folder;
  WriteFile(folder / "own", "text");
  const Handle file(CreateFileW((folder.Path() / "own").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_TRUE(file);
  EXPECT_EQ(StrangeOwner(file.Get()), "");
}

TEST(FileOwner, IsUnknownForWhatIsNoFile) { EXPECT_EQ(StrangeOwner(nullptr), "unknown"); }

TEST(User, HasAnIdentifierWithANumber) {
  const UserSid user;
  ASSERT_NE(user.Get(), nullptr);
  EXPECT_TRUE(IsValidSid(user.Get()));
  EXPECT_GT(user.Number(), 0);
}

}  // namespace
}  // namespace qmx::test
