#include "platform/system/paths.h"

#include <gmock/gmock.h>

namespace qmx::test {
namespace {

TEST(PathsOfWindows, AreThePathTextsAsTheyAre) {
  for (const char* path : {"C:\\log\\tsmdm030.log", "D:log", "\\\\server\\share\\log", "log/mixed\\kinds", ""})
    EXPECT_EQ(NativePath(path), path);
}

TEST(PathsOfWindows, AreShownWithBackslashes) { EXPECT_EQ(PathText("C:/log\\a/b"), "C:\\log\\a\\b"); }

}  // namespace
}  // namespace qmx::test
