// The event log: the system log if one listens, else the file.
#include "platform/system/event_log.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>

#include "platform/system/paths.h"
#include "platform/system/text_files.h"
#include "tests/support/fake_clock.h"
#include "tests/support/full_disk.h"
#include "tests/support/raised.h"
#include "tests/support/system_log.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class EventLogTest : public testing::Test {
 protected:
  void Start() { log_.StartLogging(PathText(folder_ / "evtlog.txt"), EventLog::kAutomatic); }
  std::string FileText() { return ReadFile(folder_ / "evtlog.txt"); }

  TempFolder folder_;
  FakeClock clock_{DateTime::FromDate(2026, 11, 6).PlusTime(14, 5, 9)};
  SystemTextFiles files_;
  std::string socket_ = folder_ / "log";
  SystemEventLog log_{clock_, files_, socket_};
  const std::string sender_ = "qmxdatacopy[" + std::to_string(getpid()) + "]: ";
};

TEST_F(EventLogTest, SendsEntriesToTheSystemLogThatListens) {
  SystemLog systemLog(socket_);
  Start();
  log_.LogEvent("Table       : tsmdm030", EventLog::kTypeError);
  EXPECT_EQ(systemLog.Receive(), "<11>Nov  6 14:05:09 " + sender_ + "Table       : tsmdm030");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "evtlog.txt"));
}

TEST_F(EventLogTest, SendsTheSystemLogItsOwnLineEnds) {
  SystemLog systemLog(socket_);
  Start();
  log_.LogEvent("\r\nDatabase    : main\r\nTable       : x\ry", EventLog::kTypeError);
  EXPECT_EQ(systemLog.Receive(), "<11>Nov  6 14:05:09 " + sender_ + "\nDatabase    : main\nTable       : x\ry");
}

TEST_F(EventLogTest, GivesTheSystemLogTheSeverityOfTheType) {
  SystemLog systemLog(socket_);
  Start();
  log_.LogEvent("for your information", 4);
  EXPECT_TRUE(systemLog.Receive().starts_with("<14>"));
}

TEST_F(EventLogTest, AppendsEntriesToTheFileIfNoSystemLogIs) {
  Start();
  log_.LogEvent("\r\nDatabase    : main", EventLog::kTypeError);
  log_.LogEvent("second", EventLog::kTypeError);
  EXPECT_EQ(FileText(), "2026-11-06 14:05:09 Error " + sender_ + "\r\nDatabase    : main\r\n" +
                            "2026-11-06 14:05:09 Error " + sender_ + "second\r\n");
}

TEST_F(EventLogTest, AppendsToTheFileIfASocketIsLeftWithoutAListener) {
  { SystemLog gone(socket_); }
  ASSERT_TRUE(std::filesystem::exists(socket_));
  Start();
  log_.LogEvent("entry", EventLog::kTypeError);
  EXPECT_EQ(FileText(), "2026-11-06 14:05:09 Error " + sender_ + "entry\r\n");
}

TEST_F(EventLogTest, LosesNoEntryWhenTheSystemLogStopsOrTheEntryIsTooLongForIt) {
  auto systemLog = std::make_unique<SystemLog>(socket_);
  Start();
  log_.LogEvent(std::string(1'000'000, 'x'), EventLog::kTypeError);
  EXPECT_EQ(systemLog->Receive(), "");
  EXPECT_GT(FileText().size(), 1'000'000U);
  systemLog.reset();
  log_.LogEvent("after", EventLog::kTypeError);
  EXPECT_TRUE(FileText().ends_with("after\r\n"));
}

TEST_F(EventLogTest, WritesTheFileIfTheSystemLogHangs) {
  const SystemLog hanging(socket_);  // takes entries until its queue is full, and reads none
  Start();
  for (int entry = 0; entry < 10'000 && FileText().empty(); ++entry) log_.LogEvent("entry", EventLog::kTypeError);
  EXPECT_EQ(FileText(), "2026-11-06 14:05:09 Error " + sender_ + "entry\r\n");
}

TEST_F(EventLogTest, WritesTheFileAlsoWhileTheProgramsOwnNumberIsOpen) {
  files_.OpenForAppend(PathText(folder_ / "other.txt"), 1);
  Start();
  log_.LogEvent("entry", EventLog::kTypeError);
  EXPECT_TRUE(FileText().ends_with("entry\r\n"));
  files_.Close(1);
}

TEST_F(EventLogTest, AFileThatCannotBeWrittenIsAnErrorEachTimeAndHoldsNoNumber) {
  Start();
  std::filesystem::create_directory(folder_ / "evtlog.txt");
  EXPECT_EQ(Raised([&] { log_.LogEvent("x", EventLog::kTypeError); }).Number(), 75);
  EXPECT_EQ(Raised([&] { log_.LogEvent("x", EventLog::kTypeError); }).Number(), 75);
  std::filesystem::remove(folder_ / "evtlog.txt");
  {
    const FullDisk full;
    EXPECT_EQ(Raised([&] { log_.LogEvent("x", EventLog::kTypeError); }).Number(), 61);
    EXPECT_EQ(Raised([&] { log_.LogEvent(std::string(1'000'000, 'x'), EventLog::kTypeError); }).Number(), 61);
  }
  log_.LogEvent("entry", EventLog::kTypeError);
  EXPECT_TRUE(FileText().ends_with("entry\r\n"));
}

TEST_F(EventLogTest, DoesNotStartIfTheTargetsFolderIsMissingOrNone) {
  const Error missing = Raised([&] { log_.StartLogging(PathText(folder_ / "none/evtlog.txt"), 0); });
  EXPECT_EQ(missing.Number(), 76);
  EXPECT_EQ(missing.Description(), "Path not found: " + (folder_ / "none/evtlog.txt"));
  WriteFile(folder_ / "file", "");
  EXPECT_EQ(Raised([&] { log_.StartLogging(PathText(folder_ / "file/evtlog.txt"), 0); }).Number(), 76);
  EXPECT_EQ(Raised([&] { log_.LogEvent("x", EventLog::kTypeError); }).Number(), 5);
}

TEST_F(EventLogTest, DoesNotStartIfTheTargetsFolderIsNotWritable) {
  // Nobody, root included, makes files there; in a container it is a read-only file system besides.
  const Error error = Raised([&] { log_.StartLogging("\\proc\\sys\\evtlog.txt", 0); });
  EXPECT_TRUE(error.Number() == 70 || error.Number() == 75) << error.Number();
}

// The copy logs go to the same folder, and the system log may stop.
TEST_F(EventLogTest, DoesNotStartThereThoughASystemLogListens) {
  SystemLog systemLog(socket_);
  const Error error = Raised([&] { log_.StartLogging("\\proc\\sys\\evtlog.txt", 0); });
  EXPECT_TRUE(error.Number() == 70 || error.Number() == 75) << error.Number();
  EXPECT_EQ(Raised([&] { log_.StartLogging(PathText(folder_ / "none/evtlog.txt"), 0); }).Number(), 76);
}

TEST_F(EventLogTest, CreatesNoFileBeforeThereIsAnEntry) {
  Start();
  EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

TEST_F(EventLogTest, ServesTheAutomaticModeOnly) {
  EXPECT_EQ(Raised([&] { log_.StartLogging("\\x", 3); }).Number(), 5);
}

TEST_F(EventLogTest, NeedsAStartIfNoSystemLogIs) {
  EXPECT_EQ(Raised([&] { log_.LogEvent("x", EventLog::kTypeError); }).Number(), 5);
}

}  // namespace
}  // namespace qmx::test
