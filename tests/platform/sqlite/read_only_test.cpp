#include "platform/sqlite/read_only.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "tests/support/as_nobody.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

// A database file in a folder, neither of which nobody may write.
class ReadOnlyDatabase : public testing::Test {
 protected:
  // As another program does it, without this system's settings.
  void Execute(const std::string& statements) {
    ASSERT_EQ(sqlite3_exec(Owner(), statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  }
  void CloseOwner() {
    sqlite3_close(owner_);
    owner_ = nullptr;
  }
  ~ReadOnlyDatabase() override {
    CloseOwner();
    fs::permissions(folder_.Path(), fs::perms::owner_all);
  }

  sqlite3* Owner() {
    if (!owner_) sqlite3_open((folder_ / "local.db").c_str(), &owner_);
    return owner_;
  }

  void TakeRightsAway() {
    for (const auto& entry : fs::directory_iterator(folder_.Path())) MakeReadOnly(entry.path());
    MakeReadOnly(folder_.Path());
  }

  std::string TextToRead() const { return "Provider=SQLite;Mode=Read;Data Source=" + folder_ / "local.db"; }

  // The number of people, as nobody reads it.
  int People(const std::string& text, const std::string& database = "") {
    const AsNobody nobody;
    Connection connection({&driver_}, nullptr);
    connection.Open(text, "", "");
    if (!database.empty()) connection.defaultdatabase(database);
    Recordset records(nullptr);
    records.Open("select * from people", connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.recordcount();
  }
  Error Refused() {
    return Raised([&] { People(TextToRead()); });
  }

  TempFolder folder_;

 private:
  SqliteDriver driver_;
  sqlite3* owner_ = nullptr;
};

constexpr const char* kTwoPeople = "create table people (code text); insert into people values ('A'), ('B')";

TEST_F(ReadOnlyDatabase, IsReadWithoutTheRightToWrite) {
  Execute(kTwoPeople);
  CloseOwner();
  TakeRightsAway();
  EXPECT_EQ(People(TextToRead()), 2);
  EXPECT_EQ(People("Provider=SQLite;Mode=Read;Data Source=" + folder_.Path().string(), "local"), 2);
}

TEST_F(ReadOnlyDatabase, IsNotWritten) {
  Execute(kTwoPeople);
  CloseOwner();
  TakeRightsAway();
  SqliteDriver driver;
  const AsNobody nobody;
  Connection connection({&driver}, nullptr);
  connection.Open(TextToRead(), "", "");
  EXPECT_EQ(Raised([&] { connection.Execute("delete from people"); }).Number(), 70);
}

TEST_F(ReadOnlyDatabase, IsRefusedToACopy) {
  Execute(kTwoPeople);
  CloseOwner();
  fs::permissions(folder_.Path(), fs::perms::all);
  MakeReadOnly(folder_ / "local.db");
  const Error error = Raised([&] { People("Provider=SQLite;Data Source=" + folder_ / "local.db"); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(folder_ / "local.db"), HasSubstr("permission")));
}

TEST_F(ReadOnlyDatabase, IsNoDevice) {
  EXPECT_THAT(Raised([&] { People("Provider=SQLite;Mode=Read;Data Source=/dev/null"); }).Description(),
              HasSubstr("no regular file"));
}

TEST_F(ReadOnlyDatabase, KeepsItsJournalModeWhereItCouldBeChanged) {
  Execute(kTwoPeople);
  CloseOwner();
  SqliteDriver driver;
  Connection connection({&driver}, nullptr);
  connection.Open(TextToRead(), "", "");
  Recordset records(nullptr);
  records.Open("pragma journal_mode", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(records.Fields(0).Value(), Variant("delete"));
}

TEST_F(ReadOnlyDatabase, IsReadInWalModeWhileAnotherProgramHasItOpen) {
  Execute("pragma journal_mode = wal");
  Execute(kTwoPeople);
  TakeRightsAway();
  EXPECT_EQ(People(TextToRead()), 2);
}

TEST_F(ReadOnlyDatabase, IsReadInWalModeAfterItsWriterWasKilled) {
  Execute("pragma journal_mode = wal");
  Execute(kTwoPeople);
  fs::create_directory(folder_ / "left");
  for (const char* name : {"local.db", "local.db-wal", "local.db-shm"})
    fs::copy_file(folder_ / name, folder_.Path() / "left" / name);
  CloseOwner();
  for (const auto& entry : fs::directory_iterator(folder_ / "left")) MakeReadOnly(entry.path());
  MakeReadOnly(folder_ / "left");
  MakeReadOnly(folder_.Path());
  EXPECT_EQ(People("Provider=SQLite;Mode=Read;Data Source=" + folder_ / "left/local.db"), 2);
  fs::permissions(folder_ / "left", fs::perms::owner_all);
}

TEST_F(ReadOnlyDatabase, IsRefusedInWalModeIfFilesWouldHaveToBeCreated) {
  Execute("pragma journal_mode = wal");
  Execute(kTwoPeople);
  CloseOwner();
  TakeRightsAway();
  const Error error = Refused();
  EXPECT_EQ(error.Number(), 70);
  EXPECT_EQ(error.Description(),
            "The database " + folder_ / "local.db" +
                " cannot be read without the right to write: it is in WAL mode and no program has it "
                "open, so SQLite must create " +
                folder_ / "local.db-wal" + ". Run the command as the user that runs the copies.");
}

TEST_F(ReadOnlyDatabase, IsRefusedInAFolderThatMayBeWrittenSoThatNoFilesRemainThatTheCopiesCannotWrite) {
  Execute("pragma journal_mode = wal");
  Execute(kTwoPeople);
  CloseOwner();
  TakeRightsAway();
  fs::permissions(folder_.Path(), fs::perms::all);
  EXPECT_EQ(Refused().Number(), 70);
  EXPECT_FALSE(fs::exists(folder_ / "local.db-wal"));
  EXPECT_FALSE(fs::exists(folder_ / "local.db-shm"));
}

TEST_F(ReadOnlyDatabase, IsRefusedIfOnlyItsFolderMayNotBeWritten) {
  Execute("pragma journal_mode = wal");
  Execute(kTwoPeople);
  CloseOwner();
  fs::permissions(folder_ / "local.db", fs::perms::all);
  MakeReadOnly(folder_.Path());
  EXPECT_THAT(Refused().Description(), HasSubstr("so SQLite must create " + folder_ / "local.db-wal. Run"));
}

TEST_F(ReadOnlyDatabase, IsRefusedIfTheFilesBesideItMayNotBeRead) {
  Execute("pragma journal_mode = wal");
  Execute(kTwoPeople);
  TakeRightsAway();
  fs::permissions(folder_ / "local.db-shm", fs::perms::owner_read);
  EXPECT_THAT(Refused().Description(), HasSubstr("permission to read is missing on " + folder_ / "local.db-shm. Run"));
}

TEST_F(ReadOnlyDatabase, IsRefusedWithAnUnfinishedTransactionInItsJournal) {
  Execute("create table people (code text)");
  Execute("pragma cache_size = 1; begin");  // so that pages are written before the transaction ends
  Execute(
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < 2000) "
      "insert into people select hex(zeroblob(200)) from n");
  fs::create_directory(folder_ / "left");
  for (const char* name : {"local.db", "local.db-journal"})
    fs::copy_file(folder_ / name, folder_.Path() / "left" / name);
  for (const auto& entry : fs::directory_iterator(folder_ / "left")) MakeReadOnly(entry.path());
  MakeReadOnly(folder_ / "left");
  MakeReadOnly(folder_.Path());
  const Error error = Raised([&] { People("Provider=SQLite;Mode=Read;Data Source=" + folder_ / "left/local.db"); });
  EXPECT_EQ(error.Number(), 70);
  EXPECT_THAT(error.Description(),
              AllOf(HasSubstr("a program that was killed left an unfinished transaction, which SQLite must undo."),
                    EndsWith(" Run the command as the user that runs the copies.")));
  fs::permissions(folder_ / "left", fs::perms::owner_all);
}

}  // namespace
}  // namespace qmx::test
