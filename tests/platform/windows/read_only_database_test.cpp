// A database that this program may read only: its file has the attribute, or another program lets nobody write it.
#include <gmock/gmock.h>
#include <windows.h>

#include <filesystem>

#include "platform/database.h"
#include "platform/error.h"
#include "platform/sqlite/driver.h"
#include "platform/system/access.h"
#include "platform/windows/handle.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

class ReadOnlyDatabaseOfWindows : public testing::Test {
 protected:
  ReadOnlyDatabaseOfWindows() {
    Open("Create").Execute("create table people (code text)");
    Open("Create").Execute("insert into people values ('A'), ('B')");
  }
  ~ReadOnlyDatabaseOfWindows() override { SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_NORMAL); }

  // As long as the handle is open nobody may write the file.
  Handle LetNobodyWrite() const {
    return Handle(CreateFileW(file_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  Connection& Open(const std::string& mode = {}) {
    connection_.emplace(std::vector<Driver*>{&driver_}, nullptr);
    connection_->Open("Provider=SQLite;" + (mode.empty() ? "" : "Mode=" + mode) + ";Data Source=" + file_.string(), "",
                      "");
    return *connection_;
  }
  int People() {
    Recordset records(nullptr);
    records.Open("select * from people", Open("Read"), kCursorKeyset, kLockOptimistic, kCommandText);
    return records.recordcount();
  }
  void LeaveWalMode() {
    Open("Create").Execute("pragma journal_mode=delete");
    connection_.reset();
  }

  TempFolder folder_;
  fs::path file_ = folder_.Path() / "local.db";
  SqliteDriver driver_;
  std::optional<Connection> connection_;
};

TEST_F(ReadOnlyDatabaseOfWindows, IsReadWhileAnotherProgramLetsNobodyWrite) {
  LeaveWalMode();
  const Handle other = LetNobodyWrite();
  EXPECT_EQ(People(), 2);
}

TEST_F(ReadOnlyDatabaseOfWindows, IsRefusedToACopyWhileAnotherProgramLetsNobodyWrite) {
  LeaveWalMode();
  const Handle other = LetNobodyWrite();
  const Error error = Raised([&] { Open(); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(file_.string()), HasSubstr("cannot be written")));
}

TEST_F(ReadOnlyDatabaseOfWindows, IsRefusedInWalModeIfFilesWouldHaveToBeCreated) {
  connection_.reset();
  const Handle other = LetNobodyWrite();
  const Error error = Raised([&] { People(); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr("so SQLite must create " + file_.string() + "-wal."),
                                         EndsWith(" Run the command as the user that runs the copies.")));
  EXPECT_FALSE(fs::exists(file_.string() + "-wal"));
}

TEST_F(ReadOnlyDatabaseOfWindows, IsRefusedToACopyIfItsFileHasTheAttribute) {
  LeaveWalMode();
  ASSERT_TRUE(SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY));
  if (AccessProblem(file_.string(), FileRight::Write) == 0)
    GTEST_SKIP() << "Wine lets root write a file with the attribute.";
  EXPECT_EQ(People(), 2);
  EXPECT_EQ(Raised([&] { Open(); }).Number(), 70);
}

TEST_F(ReadOnlyDatabaseOfWindows, IsNoDevice) {
  file_ = "NUL";
  EXPECT_THAT(Raised([&] { Open("Read"); }).Description(), HasSubstr("NUL cannot be opened: "));
}

}  // namespace
}  // namespace qmx::test
