#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "platform/database.h"
#include "platform/error.h"
#include "platform/execution.h"
#include "platform/sqlite/driver.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

class SqliteFiles : public testing::Test {
 protected:
  std::unique_ptr<Connection> Opened(const std::string& text) {
    auto connection = std::make_unique<Connection>(std::vector<Driver*>{&driver}, nullptr);
    connection->Open(text, "", "");
    return connection;
  }

  void Make(const std::string& name) {
    const auto connection = Opened("Provider=SQLite;Mode=Create;Data Source=" + folder / name);
    connection->Execute("create table people (code varchar(20) not null primary key)");
    connection->Execute("insert into people values ('" + name + "')");
  }

  static std::string OnlyPerson(Connection& connection) {
    Recordset records(nullptr);
    records.Open("select * from people", connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.Fields("code").Value().ToText();
  }

  Error Refused(const std::string& text) {
    return Raised([&] { Opened(text); });
  }

  TempFolder folder;
  SqliteDriver driver;
};

TEST_F(SqliteFiles, AFileIsOpenedAndItsDatabaseIsNamedLikeIt) {
  Make("local.db");
  const auto connection = Opened("provider=sqlite;data source=" + folder / "local.db");
  EXPECT_EQ(connection->defaultdatabase(), "local");
  connection->defaultdatabase("local");
  EXPECT_EQ(OnlyPerson(*connection), "local.db");
}

TEST_F(SqliteFiles, TheDatabaseOfASingleFileCannotBeChanged) {
  Make("local.db");
  const auto connection = Opened("Provider=SQLite;Data Source=" + folder / "local.db");
  const Error error = Raised([&] { connection->defaultdatabase("other"); });
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr("\"other\""), HasSubstr("\"local\""), HasSubstr("single file")));
  EXPECT_EQ(OnlyPerson(*connection), "local.db");
}

TEST_F(SqliteFiles, AFolderHoldsDatabasesByName) {
  Make("north.db");
  Make("south.db");
  const auto connection = Opened("Provider=SQLite;Data Source=" + folder.Path().string());
  EXPECT_EQ(connection->defaultdatabase(), "");
  connection->defaultdatabase("north");
  EXPECT_EQ(OnlyPerson(*connection), "north.db");
  connection->defaultdatabase("south");
  EXPECT_EQ(connection->defaultdatabase(), "south");
  EXPECT_EQ(OnlyPerson(*connection), "south.db");
}

TEST_F(SqliteFiles, TransactionsAreOfTheSelectedDatabaseOfAFolder) {
  Make("north.db");
  Make("south.db");
  const auto session = driver.Open(ConnectionText("Provider=SQLite;Data Source=" + folder.Path().string()));
  for (const char* name : {"north", "south", "north"}) {
    session->SelectCatalog(name);
    for (int time = 0; time < 2; ++time) {
      session->Begin();
      Execution(
          *session->Prepare("insert into people values ('kept" + std::to_string(time) + "' || hex(randomblob(8)))"))
          .Run();
      session->Commit();
      session->Begin();
      Execution(*session->Prepare("delete from people")).Run();
      session->Rollback();
    }
  }
  session->Close();
  const auto people = [&](const std::string& name) {
    const auto connection = Opened("Provider=SQLite;Data Source=" + folder / name);
    Recordset records(nullptr);
    records.Open("select * from people", *connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.recordcount();
  };
  EXPECT_EQ(people("north.db"), 1 + 4);
  EXPECT_EQ(people("south.db"), 1 + 2);
}

TEST_F(SqliteFiles, InAFolderADatabaseMustBeNamedBeforeItIsUsed) {
  const auto connection = Opened("Provider=SQLite;Data Source=" + folder.Path().string());
  const Error error = Raised([&] { connection->Execute("delete from people"); });
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(folder.Path().string()), HasSubstr("must be named")));
  connection->Close();
}

TEST_F(SqliteFiles, ADatabaseThatIsNotInTheFolderIsNamedWithItsFile) {
  const auto connection = Opened("Provider=SQLite;Data Source=" + folder.Path().string());
  const Error error = Raised([&] { connection->defaultdatabase("west"); });
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(folder / "west.db"), HasSubstr("no such file")));
  EXPECT_FALSE(fs::exists(folder / "west.db"));
}

TEST_F(SqliteFiles, ADatabaseNameCannotLeaveTheFolder) {
  Make("local.db");
  fs::create_directory(folder / "inner");
  const auto connection = Opened("Provider=SQLite;Data Source=" + folder / "inner");
  for (const char* name : {"../local", "a\\b", ""}) {
    EXPECT_THAT(Raised([&] { connection->defaultdatabase(name); }).Description(),
                HasSubstr("cannot be a default database"));
  }
}

TEST_F(SqliteFiles, AMissingFileIsNotMadeByATypingError) {
  const Error error = Refused("Provider=SQLite;Data Source=" + folder / "locla.db");
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(folder / "locla.db"), HasSubstr("qmxadmin init")));
  EXPECT_FALSE(fs::exists(folder / "locla.db"));
}

TEST_F(SqliteFiles, ModeCreateMakesAMissingFileAndOpensOneThatIsThere) {
  const std::string text = "Provider=SQLite;Mode=create;Data Source=" + folder / "new.db";
  Opened(text)->Execute("create table people (code text)");
  EXPECT_TRUE(fs::exists(folder / "new.db"));
  Opened(text)->Execute("insert into people values ('kept')");
  const auto inFolder = Opened("Provider=SQLite;Mode=Create;Data Source=" + folder.Path().string());
  inFolder->defaultdatabase("new");
  EXPECT_EQ(OnlyPerson(*inFolder), "kept");
}

TEST_F(SqliteFiles, AMissingFolderIsNamedAndNeverMade) {
  for (const char* mode : {"", ";Mode=Create"}) {
    const Error error = Refused("Provider=SQLite;Data Source=" + folder / "nowhere/local.db" + mode);
    EXPECT_EQ(error.Number(), -2147467259);
    EXPECT_THAT(error.Description(), HasSubstr("there is no folder " + folder / "nowhere"));
  }
  EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(SqliteFiles, AFileThatIsNoDatabaseIsRefusedAndKept) {
  const std::string letter = "Dear reader, this is a letter and no database, however long it may go on and on.";
  WriteFile(folder / "letter.db", letter);
  const Error error = Refused("Provider=SQLite;Mode=Create;Data Source=" + folder / "letter.db");
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr(folder / "letter.db"), HasSubstr("no SQLite database")));
  EXPECT_EQ(ReadFile(folder / "letter.db"), letter);
}

TEST_F(SqliteFiles, AnUnknownKeywordIsRefusedWithTheKnownOnes) {
  Make("local.db");
  const Error error = Refused("Provider=SQLite;Data Sauce=x;Data Source=" + folder / "local.db");
  EXPECT_EQ(error.Number(), 5);
  EXPECT_THAT(error.Description(), AllOf(HasSubstr("\"Data Sauce\""), HasSubstr("Provider, Data Source and Mode")));
  EXPECT_EQ(Refused("Provider=SQLite;UID=me;PWD=geheim;Data Source=x").Number(), 5);
}

TEST_F(SqliteFiles, AMissingDataSourceAndAnUnknownModeAreRefused) {
  EXPECT_THAT(Refused("Provider=SQLite").Description(), HasSubstr("Data Source"));
  EXPECT_EQ(Refused("Provider=SQLite;Data Source=").Number(), 5);
  const Error mode = Refused("Provider=SQLite;Mode=ReadOnly;Data Source=" + folder / "local.db");
  EXPECT_EQ(mode.Number(), 5);
  EXPECT_THAT(mode.Description(), AllOf(HasSubstr("ReadOnly"), HasSubstr("Create, "), HasSubstr("Read, ")));
}

TEST_F(SqliteFiles, AMissingTableIsNamedWithItsDatabaseAndWhatToDo) {
  Make("local.db");
  const auto connection = Opened("Provider=SQLite;Data Source=" + folder / "local.db");
  const Error error = Raised([&] { connection->Describe("tsmdm030"); });
  EXPECT_EQ(error.Number(), -2147217865);
  EXPECT_THAT(error.Description(),
              AllOf(HasSubstr("\"tsmdm030\""), HasSubstr("\"local\""), HasSubstr("qmxadmin init")));
}

TEST_F(SqliteFiles, AreKeptInWalMode) {
  Make("local.db");
  const auto connection = Opened("Provider=SQLite;Data Source=" + folder / "local.db");
  Recordset records(nullptr);
  records.Open("pragma journal_mode", *connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(records.Fields(0).Value(), Variant("wal"));
  records.Close();
  records.Open("pragma synchronous", *connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(records.Fields(0).Value().ToInt32(), 1);  // normal
}

TEST_F(SqliteFiles, LeaveNothingBehindWhenTheLastConnectionCloses) {
  Make("local.db");
  EXPECT_TRUE(fs::exists(folder / "local.db"));
  EXPECT_FALSE(fs::exists(folder / "local.db-wal"));
  EXPECT_FALSE(fs::exists(folder / "local.db-shm"));
}

}  // namespace
}  // namespace qmx::test
