// The failure report: one line a link on its descriptor, and never a failure of its own.
#include "platform/system/failure_report.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(FailureReport, WritesTheChainOneLineALink) {
  TempFolder folder;
  const int descriptor = open((folder / "out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_GE(descriptor, 0);
  try {
    try {
      throw Error(76, "Text files", "Path not found: \\none\\a.log").With("file", "/none/a.log");
    } catch (const Error&) {
      throw Error(176, "Copy", "Failed\r\nas expected");
    }
  } catch (const Error& error) {
    StandardErrorReport(descriptor).Report(error);
  }
  close(descriptor);
  EXPECT_EQ(ReadFile(folder / "out"),
            "error 176, Copy: Failed as expected\n"
            "  because of error 76, Text files: Path not found: \\none\\a.log [file: /none/a.log]\n");
}

TEST(FailureReport, IgnoresThatItCannotWrite) {
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  StandardErrorReport(full).Report(Error(1, "a", "b"));
  close(full);
  StandardErrorReport(-1).Report(Error(1, "a", "b"));
  SUCCEED() << "neither call failed";
}

}  // namespace
}  // namespace qmx::test
