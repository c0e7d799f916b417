#include "platform/system/shared_library.h"

#include <gmock/gmock.h>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

TEST(SharedLibraries, AreLoadedOnceAndHaveSymbols) {
  const SharedLibrary first = LoadSharedLibrary("C:\\windows\\system32\\kernel32.dll");
  const SharedLibrary second = LoadSharedLibrary("C:/windows/system32/kernel32.dll");
  ASSERT_NE(first.handle, nullptr) << first.problem;
  EXPECT_EQ(first.handle, second.handle);
  EXPECT_NE(FindSymbol(first.handle, "GetTickCount64"), nullptr);
  EXPECT_EQ(FindSymbol(first.handle, "there_is_no_such_function"), nullptr);
}

TEST(SharedLibraries, OfARelativePathAreLookedForInTheCurrentFolder) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path("C:\\windows\\system32");
  const SharedLibrary relative = LoadSharedLibrary("../system32/version.dll");
  std::filesystem::current_path(before);
  ASSERT_NE(relative.handle, nullptr) << relative.problem;
  EXPECT_EQ(relative.handle, LoadSharedLibrary("C:\\windows\\system32\\version.dll").handle);
}

TEST(SharedLibraries, SayWhyTheyCannotBeLoaded) {
  const TempFolder folder;
  const SharedLibrary missing = LoadSharedLibrary(folder.Path() / "none.dll");
  EXPECT_EQ(missing.handle, nullptr);
  EXPECT_THAT(missing.problem, HasSubstr("none.dll: "));
  EXPECT_THAT(missing.problem, EndsWith(" (126)"));
  WriteFile(folder / "text.dll", "no library");
  EXPECT_THAT(LoadSharedLibrary(folder.Path() / "text.dll").problem, EndsWith(" (193)"));
}

}  // namespace
}  // namespace qmx::test
