// A trace that the system refuses to write: a pipe in its place, and a full disk.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "platform/error.h"
#include "platform/trace/trace.h"
#include "tests/support/full_disk.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(AnUnwritableTrace, IsAPipe) {
  TempFolder folder;
  ASSERT_EQ(mkfifo((folder / "trace").c_str(), 0600), 0);
  const Error error = Raised([&] { Trace trace(folder / "trace"); });
  EXPECT_EQ(error.Number(), 75);
  EXPECT_EQ(error.Description(), "The trace file \"" + (folder / "trace") +
                                     "\" that QMX_TRACE names cannot be written: it is a named pipe, not a regular "
                                     "file.");
}

TEST(AnUnwritableTrace, EndsOnAFullDiskWithALineForTheOperatorAndNoError) {
  TempFolder folder;
  Trace trace(folder / "trace");
  std::filesystem::resize_file(folder / "trace", 1 << 20);
  const FullDisk full(1 << 20);
  testing::internal::CaptureStderr();
  trace.Write(JsonLine::Object().Add("op", "create"));
  trace.Write(JsonLine::Object().Add("op", "create"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "The trace file \"" + (folder / "trace") + "\" cannot be written any further: File too large.\n");
}

}  // namespace
}  // namespace qmx::test
