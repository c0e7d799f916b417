#include "platform/system/shared_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

TEST(ASharedLibrary, IsOneUnderEveryPath) {
  const SharedLibrary library = LoadSharedLibrary(TEST_LIBRARY);
  ASSERT_NE(library.handle, nullptr) << library.problem;
  const TempFolder folder;
  std::filesystem::create_symlink(TEST_LIBRARY, folder.Path() / "link.so");
  EXPECT_EQ(LoadSharedLibrary(folder.Path() / "link.so").handle, library.handle);
}

TEST(ASharedLibrary, HasSymbolsThatCanBeFound) {
  const SharedLibrary library = LoadSharedLibrary(TEST_LIBRARY);
  EXPECT_NE(FindSymbol(library.handle, "qmx_component_server_entry"), nullptr);
  EXPECT_EQ(FindSymbol(library.handle, "no_such_symbol"), nullptr);
}

TEST(ASharedLibrary, SaysWhyItCannotBeLoaded) {
  const TempFolder folder;
  WriteFile(folder.Path() / "text.so", "no library");
  EXPECT_THAT(LoadSharedLibrary(folder.Path() / "none.so").problem, HasSubstr("none.so"));
  EXPECT_THAT(LoadSharedLibrary(folder.Path() / "text.so").problem, HasSubstr("text.so"));
  EXPECT_EQ(LoadSharedLibrary(folder.Path() / "text.so").handle, nullptr);
}

}  // namespace
}  // namespace qmx::test
