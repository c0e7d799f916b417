#include "platform/windows/file_stream.h"

#include <gtest/gtest.h>
#include <io.h>

#include <cerrno>
#include <vector>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

HANDLE Open(const std::filesystem::path& path) {
  return CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
}

// All descriptors of the process, until it is destroyed.
class NoFreeDescriptor {
 public:
  NoFreeDescriptor() {
    for (int next = _dup(1); next >= 0; next = _dup(1)) taken_.push_back(next);
  }
  ~NoFreeDescriptor() {
    for (const int descriptor : taken_) _close(descriptor);
  }
  NoFreeDescriptor(const NoFreeDescriptor&) = delete;
  NoFreeDescriptor& operator=(const NoFreeDescriptor&) = delete;

 private:
  std::vector<int> taken_;
};

TEST(AStreamOverAFile, WritesItAndClosesIt) {
  const TempFolder folder;
  Handle file(Open(folder.Path() / "a.txt"));
  std::FILE* const stream = StreamOver(file, "wb");
  ASSERT_NE(stream, nullptr);
  EXPECT_FALSE(file);
  std::fputs("a\n", stream);
  std::fclose(stream);
  EXPECT_EQ(ReadFile(folder / "a.txt"), "a\n");
}

TEST(AStreamOverAFile, LeavesTheFileToItsHandleIfNoDescriptorIsFree) {
  const TempFolder folder;
  {
    Handle file(Open(folder.Path() / "a.txt"));
    const NoFreeDescriptor none;
    EXPECT_EQ(StreamOver(file, "wb"), nullptr);
    EXPECT_TRUE(errno == EMFILE || errno == ENFILE) << errno;  // the second one under Wine
    EXPECT_TRUE(file);
  }
  EXPECT_TRUE(Handle(Open(folder.Path() / "a.txt"))) << "The file was not closed.";
}

}  // namespace
}  // namespace qmx::test
