// The sandbox scheduling server: one line per call.
#include <gtest/gtest.h>

#include "platform/components/installed_components.h"
#include "tests/support/environment.h"
#include "tests/support/fake_clock.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class SchedulingServer : public testing::Test {
 protected:
  std::string Board() const { return (folder_.Path() / "board.txt").string(); }

  TempFolder folder_;
  FakeClock clock_;
  InstalledComponents components_{clock_, {TEST_COMPONENTS}};
};

TEST_F(SchedulingServer, WritesOneLinePerCallToTheBoard) {
  const EnvironmentVariable board("QMX_MESSAGE_BOARD", Board().c_str());
  Variant time = DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9);
  const Object messages = components_.CreateObject("QMXServer20.clsMessHandler");
  messages.Call("writeToMessageBox", Ref(time), "Service Types (tsmdm030) : Data copy started");
  messages.Call("WriteToAlertBox", Ref(time), " Data copy of Table x failed.\r\nError is -1 why\r\n------");
  Variant request = 4711;
  Variant table = "tsmdm030";
  components_.CreateObject("QMXServer20.ClientRequests")
      .Call("UpdateStatusByTalbe", Ref(request), Ref(table), std::int16_t{10});
  EXPECT_EQ(
      "message | 2026-11-20 14:05:09 | Service Types (tsmdm030) : Data copy started\n"
      "alert | 2026-11-20 14:05:09 |  Data copy of Table x failed. / Error is -1 why / ------\n"
      "status | 4711 | tsmdm030 | 10\n",
      ReadFile(Board()));
  EXPECT_EQ(Variant(4711), request);
  EXPECT_EQ(Variant("tsmdm030"), table);
}

TEST_F(SchedulingServer, AppendsToTheBoard) {
  const EnvironmentVariable board("QMX_MESSAGE_BOARD", Board().c_str());
  WriteFile(Board(), "before\n");
  components_.CreateObject("qmxserver20.CLIENTREQUESTS").Call("updatestatusbytalbe", 1, "t", 40);
  EXPECT_EQ("before\nstatus | 1 | t | 40\n", ReadFile(Board()));
}

TEST_F(SchedulingServer, WritesToABoardWithLettersOfAnyScript) {
  const std::filesystem::path file = folder_.Path() / "Größe Δ 日誌.txt";
  const EnvironmentVariable board("QMX_MESSAGE_BOARD", file.string().c_str());
  components_.CreateObject("QMXServer20.ClientRequests").Call("UpdateStatusByTalbe", 1, "t", 40);
  EXPECT_EQ("status | 1 | t | 40\n", ReadFile(file));
}

TEST_F(SchedulingServer, WritesToStandardErrorWithoutABoard) {
  const EnvironmentVariable board("QMX_MESSAGE_BOARD", nullptr);
  testing::internal::CaptureStderr();
  components_.CreateObject("QMXServer20.ClientRequests").Call("UpdateStatusByTalbe", 1, "t", 40);
  EXPECT_EQ("status | 1 | t | 40\n", testing::internal::GetCapturedStderr());
}

TEST_F(SchedulingServer, RaisesAnErrorIfTheBoardCannotBeWritten) {
  const EnvironmentVariable board("QMX_MESSAGE_BOARD", "/no/such/folder/board.txt");
  const Error error =
      Raised([&] { components_.CreateObject("QMXServer20.ClientRequests").Call("UpdateStatusByTalbe", 1, "t", 40); });
  EXPECT_EQ(75, error.Number());
  EXPECT_EQ("QmxSandboxServer", error.Source());
  EXPECT_EQ(
      "The message board \"/no/such/folder/board.txt\" cannot be written. Check the path in QMX_MESSAGE_BOARD, the "
      "folder's rights and the disk.",
      error.Description());
}

TEST_F(SchedulingServer, NeedsAllArguments) {
  EXPECT_EQ(450, Raised([&] {
                   components_.CreateObject("QMXServer20.clsMessHandler").Call("writeToMessageBox", "text");
                 }).Number());
}

}  // namespace
}  // namespace qmx::test
