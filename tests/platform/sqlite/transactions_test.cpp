// What SQLite does to a transaction by itself: some failures roll it back, and the next statement would be saved alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/database_driver.h"
#include "platform/error.h"
#include "platform/sqlite/session.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;

class ATransactionThatSqliteRolledBack : public testing::Test {
 protected:
  void SetUp() override {
    Run("create table people (code varchar(20) not null primary key, age integer check (age < 150))");
    Run("create trigger nobody before insert on people when new.code = 'NOBODY' "
        "begin select raise(rollback, 'there is nobody'); end");
    session.Begin();
    Run("insert into people values ('FIRST', 1)");
    EXPECT_EQ(Raised([&] { Run("insert into people values ('NOBODY', 2)"); }).Number(), errors::kIntegrity);
  }

  void Run(const std::string& statement) {
    const auto prepared = session.Prepare(statement);
    while (prepared->Step()) {
    }
  }

  std::string People() {
    const auto statement = session.Prepare("select coalesce(group_concat(code), '') from people");
    statement->Step();
    return statement->Value(0).ToText();
  }

  TempFolder folder;
  SqliteDriverSession session{folder / "local.db", SqliteMode::Create};
};

TEST_F(ATransactionThatSqliteRolledBack, TakesNoFurtherStatement) {
  const Error error = Raised([&] { Run("insert into people values ('SECOND', 3)"); });
  EXPECT_EQ(error.Number(), errors::kProviderUnspecified);
  EXPECT_EQ(error.Description(), "The database rolled the transaction back; nothing of it is saved.");
  EXPECT_EQ(Raised([&] { People(); }).Description(), error.Description());
  session.Rollback();
  EXPECT_EQ(People(), "");
}

TEST_F(ATransactionThatSqliteRolledBack, IsNotCommitted) {
  const Error error = Raised([&] { session.Commit(); });
  EXPECT_EQ(error.Description(), "The database rolled the transaction back; nothing of it is saved.");
  session.Rollback();
  EXPECT_EQ(People(), "");
}

TEST_F(ATransactionThatSqliteRolledBack, EndsWithARollbackAndTheNextOneIsSaved) {
  session.Rollback();
  session.Begin();
  Run("insert into people values ('SECOND', 3)");
  session.Commit();
  EXPECT_EQ(People(), "SECOND");
}

// Failures that leave the transaction open.
class FailuresOfSqlite : public testing::Test {
 protected:
  Error Failure(const std::string& statement) {
    return Raised([&] {
      const auto prepared = session.Prepare(statement);
      while (prepared->Step()) {
      }
    });
  }

  TempFolder folder;
  SqliteDriverSession session{folder / "local.db", SqliteMode::Create};
};

TEST_F(FailuresOfSqlite, HaveTheNumberOfTheirKind) {
  EXPECT_EQ(Failure("select zeroblob(2000000000)").Number(), errors::kOverflow);
  session.Prepare("create table numbered (number integer primary key)")->Step();
  EXPECT_EQ(Failure("insert into numbered values ('no number')").Number(), errors::kTypeMismatch);
  EXPECT_EQ(Failure("select * from missing").Number(), errors::kNoSuchTable);
  EXPECT_EQ(Failure("selec").Number(), errors::kCommand);
}

TEST_F(FailuresOfSqlite, OfAnObjectInPlaceOfAValueIsATypeMismatch) {
  const auto statement = session.Prepare("select ?");
  EXPECT_EQ(Raised([&] { statement->Bind(0, Object()); }).Number(), errors::kTypeMismatch);
}

}  // namespace
}  // namespace qmx::test
