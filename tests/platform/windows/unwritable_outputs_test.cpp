// Traces and run records that Windows refuses to write: a device in their place, another program that keeps the file to
// itself, and a full disk.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <filesystem>

#include "platform/error.h"
#include "platform/run_records/run_record.h"
#include "platform/system/write_all.h"
#include "platform/trace/trace.h"
#include "platform/windows/handle.h"
#include "tests/platform/run_records/kept_failures.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Handle KeptToItself(const std::string& path) {
  return Handle(CreateFileW(std::filesystem::path(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
}

TEST(AnUnwritableTraceOfWindows, IsADevice) {
  const Error error = Raised([] { Trace trace("NUL"); });
  EXPECT_EQ(error.Number(), 75);
  EXPECT_EQ(error.Description(),
            "The trace file \"NUL\" that QMX_TRACE names cannot be written: it is a device, not a regular file.");
}

TEST(AnUnwritableTraceOfWindows, IsAFileThatAnotherProgramKeepsToItself) {
  const TempFolder folder;
  const Handle other = KeptToItself(folder / "trace");
  EXPECT_EQ(Raised([&] { Trace trace(folder / "trace"); }).Description(),
            "The trace file \"" + folder / "trace" +
                "\" that QMX_TRACE names cannot be written: it is open in another program, which does not share it.");
}

class AnUnwritableRunRecordOfWindows : public testing::Test {
 protected:
  void Begin(const std::string& path) {
    RunStart start;
    start.path = path;
    start.table = "tsmdm030";
    RunRecord(start, failures_).End(0, {});
  }

  TempFolder folder_;
  KeptFailures failures_;
};

TEST_F(AnUnwritableRunRecordOfWindows, IsADevice) {
  Begin("NUL");
  EXPECT_THAT(failures_.descriptions,
              ElementsAre("error 75, Run record: The run is not recorded: \"NUL\" cannot be written: it is a device, "
                          "not a regular file."));
}

TEST_F(AnUnwritableRunRecordOfWindows, IsAFileThatAnotherProgramKeepsToItself) {
  const Handle other = KeptToItself(folder_ / "QMXRuns.jsonl");
  Begin(folder_ / "QMXRuns.jsonl");
  EXPECT_THAT(failures_.descriptions,
              ElementsAre(HasSubstr("cannot be written: it is open in another program, which does not share it.")));
}

TEST(AFullDiskOfWindows, IsTheErrorOfAWrite) {
  const int full = _wopen(L"Z:\\dev\\full", _O_WRONLY | _O_BINARY);
  if (full < 0) GTEST_SKIP() << "Only Wine has a device that is always full.";
  EXPECT_EQ(WriteAtOnce(full, "text"), ENOSPC);
  _close(full);
}

}  // namespace
}  // namespace qmx::test
