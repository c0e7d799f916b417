#include "platform/database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/error.h"
#include "platform/sqlite/driver.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Database, MakesConnectionsAndRecordsetsFromTheirProgIdsInAnyCase) {
  Database database({});
  EXPECT_EQ(database.CreateConnection("ADODB.Connection")->State(), 0);
  EXPECT_EQ(database.CreateConnection("adodb.CONNECTION")->State(), 0);
  EXPECT_EQ(database.CreateRecordset("ADODB.Recordset")->State(), 0);
  EXPECT_EQ(database.CreateRecordset("ADODB.RECORDSET")->State(), 0);
}

TEST(Database, AnotherProgIdCannotBeCreatedAndIsNamed) {
  Database database({});
  const Error error = Raised([&] { database.CreateConnection("ADODB.Command"); });
  EXPECT_EQ(error.Number(), 429);
  EXPECT_THAT(error.Description(), HasSubstr("ADODB.Command"));
  EXPECT_EQ(Raised([&] { database.CreateRecordset("ADODB.Connection"); }).Number(), 429);
}

TEST(Database, AConnectionTextOfAnUnknownFormIsAnErrorThatNamesTheKnownForms) {
  SqliteDriver sqlite;
  Connection connection({&sqlite}, nullptr);
  const Error nothing = Raised([&] { connection.Open("Data Source=x.db;Pwd=secret", "", ""); });
  EXPECT_EQ(nothing.Number(), 5);
  EXPECT_THAT(nothing.Description(), HasSubstr("Provider=SQLite;Data Source=FILE"));
  EXPECT_THAT(DescribeChain(nothing), Not(HasSubstr("secret")));
  const Error unknown = Raised([&] { connection.Open("Provider=Oracle;Data Source=x", "", ""); });
  EXPECT_EQ(unknown.Number(), 5);
  EXPECT_THAT(unknown.Description(), HasSubstr("Oracle"));
  EXPECT_EQ(Raised([&] { connection.Open("", "", ""); }).Number(), 5);
  EXPECT_EQ(connection.State(), 0);
}

// Fails with an exception that is no Error of the platform's.
class ForeignDriver : public Driver {
 public:
  std::string Form() const override { return "any"; }
  bool Serves(const ConnectionText& text) const override {
    seen = text.Text();
    return true;
  }
  std::unique_ptr<DriverSession> Open(const ConnectionText&) override { throw std::runtime_error("wire cut"); }
  mutable std::string seen;
};

TEST(Database, AForeignExceptionBecomesAnError) {
  ForeignDriver driver;
  Connection connection({&driver}, nullptr);
  const Error error = Raised([&] { connection.Open("A=1", "", ""); });
  EXPECT_EQ(error.Number(), 51);
  EXPECT_EQ(error.Description(), "wire cut");
}

TEST(Database, UserAndPasswordGoIntoTheConnectionText) {
  ForeignDriver driver;
  Connection connection({&driver}, nullptr);
  Raised([&] { connection.Open("DSN=local", "ann", "a;b}c"); });
  EXPECT_EQ(driver.seen, "DSN=local;UID=ann;PWD={a;b}}c}");
}

}  // namespace
}  // namespace qmx::test
