#include "platform/system/event_log.h"

#include <gmock/gmock.h>

#include "platform/error.h"
#include "platform/system/text_files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::MatchesRegex;

class EventLogOfWindows : public testing::Test {
 protected:
  TempFolder folder_;
  FakeClock clock_;
  SystemTextFiles files_;
  SystemEventLog log_{clock_, files_, "a source that is not registered"};
};

TEST_F(EventLogOfWindows, WritesEntriesIntoTheFileIfTheSourceIsNotRegistered) {
  log_.StartLogging(folder_ / "evtlog.txt", EventLog::kAutomatic);
  log_.LogEvent("First\r\nSecond", EventLog::kTypeError);
  EXPECT_THAT(ReadFile(folder_ / "evtlog.txt"),
              MatchesRegex("2026-11-20 14:05:09 Error qmxdatacopy\\[\\d+\\]: First\r\nSecond\r\n"));
}

TEST_F(EventLogOfWindows, RefusesAFolderThatIsMissing) {
  const Error error = Raised([&] { log_.StartLogging(folder_ / "none\\evtlog.txt", EventLog::kAutomatic); });
  EXPECT_EQ(error.Number(), errors::kPathNotFound);
}

TEST_F(EventLogOfWindows, RefusesOtherModes) {
  EXPECT_EQ(Raised([&] { log_.StartLogging(folder_ / "evtlog.txt", 1); }).Number(), errors::kInvalidCall);
}

TEST(SystemLogOfWindows, IsTheSourceOfTheProgramsName) { EXPECT_EQ(UsualSystemLog(), "qmxdatacopy"); }

}  // namespace
}  // namespace qmx::test
