#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class OnAConnection : public RecordSetTest {};
INSTANTIATE_TEST_SUITE_P(Over, OnAConnection, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(OnAConnection, OpenAndCloseChangeItsState) {
  EXPECT_EQ(connection.State(), 1);
  EXPECT_EQ(Raised([&] { connection.Open(base->ConnectionText(), "", ""); }).Number(), 3705);
  connection.Close();
  EXPECT_EQ(connection.State(), 0);
  EXPECT_EQ(Raised([&] { connection.Close(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { connection.Execute("delete from people"); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { connection.defaultdatabase(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { connection.defaultdatabase("other"); }).Number(), 3704);
  connection.Open(base->ConnectionText(), "", "");
  EXPECT_EQ(connection.State(), 1);
}

TEST_P(OnAConnection, ExecuteReturnsTheNumberOfAffectedRows) {
  CreatePeople();
  EXPECT_EQ(connection.Execute("insert into people (code) values ('A')"), 1);
  EXPECT_EQ(connection.Execute("insert into people (code) values ('B')"), 1);
  EXPECT_EQ(connection.Execute("update people set name='x'"), 2);
  EXPECT_EQ(connection.Execute("DELETE FROM people WHERE code='none'"), 0);
  EXPECT_EQ(connection.Execute("DELETE FROM people WHERE 1=1"), 2);
}

TEST_P(OnAConnection, AFailingStatementIsGivenWithItsText) {
  const Error noTable = Raised([&] { connection.Execute("delete from nobody"); });
  EXPECT_EQ(noTable.Number(), -2147217865);
  EXPECT_THAT(noTable.Description(), HasSubstr("nobody"));
  EXPECT_EQ(noTable.DetailOf("statement"), "delete from nobody");
  EXPECT_EQ(Raised([&] { connection.Execute("delete people"); }).Number(), -2147217900);
  CreatePeople();
  AddPerson("A", "Ann");
  EXPECT_EQ(Raised([&] { AddPerson("A", "Ann"); }).Number(), -2147217873);
  EXPECT_EQ(Raised([&] { connection.Execute("delete from people where nick='x'"); }).Number(), -2147217900);
}

TEST_P(OnAConnection, ASecondStatementAndATextWithoutOneAreRefused) {
  CreatePeople();
  AddPerson("A", "Ann");
  driver.Restart();
  EXPECT_EQ(Raised([&] { connection.Execute("delete from people where code='x'; delete from people"); }).Number(),
            -2147217900);
  EXPECT_EQ(Raised([&] { connection.Execute(""); }).Number(), -2147217900);
  EXPECT_EQ(Raised([&] { connection.Execute(" ; "); }).Number(), -2147217900);
  EXPECT_EQ(Raised([&] { connection.Execute("-- nothing but a remark"); }).Number(), -2147217900);
  EXPECT_THAT(driver.Record(), ElementsAre());
  EXPECT_EQ(connection.Execute("delete from people where code='x;y' ; "), 0);
  EXPECT_THAT(Rows("select code from people"), ElementsAre("A"));
}

TEST_P(OnAConnection, AKeyWithAQuoteReachesNoRow) {
  CreatePeople();
  AddPerson("A", "Ann");
  driver.Restart();
  const SqlText statement = SqlText("DELETE FROM people where code='").Value("' or ''='").Append("'");
  const Error error = Raised([&] { connection.Execute(statement); });
  EXPECT_EQ(error.Number(), -2147217900);
  EXPECT_EQ(error.DetailOf("statement"), "DELETE FROM people where code='' or ''=''");
  EXPECT_THAT(driver.Record(), ElementsAre());
  EXPECT_THAT(Rows("select code from people"), ElementsAre("A"));
}

TEST_P(OnAConnection, TheTimeOutIsThirtySecondsByDefault) {
  EXPECT_EQ(connection.CommandTimeout(), 30);
  connection.CommandTimeout(150);
  EXPECT_EQ(connection.CommandTimeout(), 150);
  EXPECT_EQ(Raised([&] { connection.CommandTimeout(-1); }).Number(), 5);
  EXPECT_EQ(connection.CommandTimeout(), 150);
}

TEST_P(OnAConnection, TheTimeOutCanBeSetBeforeItIsOpen) {
  Connection other({&driver}, nullptr);
  other.CommandTimeout(7);
  other.Open(base->ConnectionText(), "", "");
  EXPECT_EQ(other.CommandTimeout(), 7);
}

TEST_P(OnAConnection, TheDefaultDatabaseStaysWhileARecordsetIsOpen) {
  CreatePeople();
  const std::string before = connection.defaultdatabase();
  auto records = Opened("select * from people");
  EXPECT_EQ(Raised([&] { connection.defaultdatabase(before); }).Number(), 3219);
  records.reset();
  connection.defaultdatabase(before);
  EXPECT_EQ(connection.defaultdatabase(), before);
}

TEST_P(OnAConnection, ADefaultDatabaseThatIsMissingIsNamedAndTheOneBeforeStays) {
  const std::string before = connection.defaultdatabase();
  const Error error = Raised([&] { connection.defaultdatabase("no_such_database"); });
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), HasSubstr("no_such_database"));
  EXPECT_EQ(connection.defaultdatabase(), before);
}

TEST_P(OnAConnection, AFailingCloseLeavesItClosed) {
  driver.Restart();
  driver.FailAt(1);  // the commit
  EXPECT_EQ(Raised([&] { connection.Close(); }).Number(), -2147467259);
  EXPECT_EQ(connection.State(), 0);
  EXPECT_THAT(driver.Record(), ElementsAre("Commit", "Close"));
}

TEST_P(OnAConnection, ClosingTheConnectionDoesNotNeedItsRecordsetsClosed) {
  CreatePeople();
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  connection.Close();
  EXPECT_EQ(connection.State(), 0);
  EXPECT_THAT(Rows("select code from people"), ElementsAre());
}

TEST_P(OnAConnection, ARecordsetMayOutliveItsConnection) {
  auto shortLived = std::make_unique<Connection>(std::vector<Driver*>{&driver}, nullptr);
  shortLived->Open(base->ConnectionText(), "", "");
  shortLived->Execute("create table notes (note varchar(20))");
  Recordset records(nullptr);
  records.Open("notes", *shortLived, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.AddNew();
  shortLived.reset();
  EXPECT_EQ(Raised([&] { records.Update(); }).Number(), 3709);
  records.Close();
  EXPECT_THAT(Rows("select * from notes"), ElementsAre());
}

}  // namespace
}  // namespace qmx::test
