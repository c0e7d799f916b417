#include "platform/system/descriptors.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <io.h>
#include <windows.h>

#include <string>

#include "platform/system/write_all.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

struct Pipe {
  Pipe() { EXPECT_TRUE(CreatePipe(&reader, &writer, nullptr, 4096)); }
  ~Pipe() { CloseHandle(reader); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  HANDLE reader = nullptr, writer = nullptr;
};

int NumberOf(HANDLE handle) { return static_cast<int>(reinterpret_cast<std::intptr_t>(handle)); }

TEST(InheritedDescriptors, AreHandlesOfTheProgramThatStartedThisOne) {
  const Pipe pipe;
  SetHandleInformation(pipe.writer, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  const int descriptor = InheritedDescriptor(NumberOf(pipe.writer));
  ASSERT_GE(descriptor, 0);
  DWORD flags = HANDLE_FLAG_INHERIT;
  ASSERT_TRUE(GetHandleInformation(pipe.writer, &flags));
  EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U);  // and it goes no further

  WriteAll(descriptor, "rows 3\n");
  _close(descriptor);
  char text[16] = {};
  DWORD length = 0;
  EXPECT_TRUE(::ReadFile(pipe.reader, text, sizeof text, &length, nullptr));
  EXPECT_EQ(std::string(text, length), "rows 3\n");
}

TEST(InheritedDescriptors, AreNoneIfNothingIsOpenThere) { EXPECT_EQ(InheritedDescriptor(123456), -1); }

TEST(Descriptors, TakeALineIfTheyAreFiles) {
  const TempFolder folder;
  const int file = _wopen((folder.Path() / "file").c_str(), _O_CREAT | _O_WRONLY, 0600);
  EXPECT_TRUE(WriteLine(file, "rows 3\n"));
  _close(file);
  EXPECT_EQ(ReadFile(folder / "file"), "rows 3\n");
}

TEST(Descriptors, TakeALineIfTheyArePipesWithRoom) {
  const Pipe pipe;
  const int descriptor = InheritedDescriptor(NumberOf(pipe.writer));
  EXPECT_TRUE(WriteLine(descriptor, "rows 3\n"));
  _close(descriptor);
}

}  // namespace
}  // namespace qmx::test
