#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

class RecordsetOpening : public RecordSetTest {};
INSTANTIATE_TEST_SUITE_P(Over, RecordsetOpening, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(RecordsetOpening, StartsClosedAndThenOnlyStateAndOpenAreAllowed) {
  Recordset records(nullptr);
  EXPECT_EQ(records.State(), 0);
  EXPECT_EQ(Raised([&] { records.recordcount(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.BOF(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.Eof(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.MoveFirst(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.MoveNext(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.Fields("code"); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.Fields(0); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.AddNew(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.Update(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.CancelUpdate(); }).Number(), 3704);
  EXPECT_EQ(Raised([&] { records.Close(); }).Number(), 3704);
}

TEST_P(RecordsetOpening, AnOpenOneCannotBeOpenedAgainAndStaysAsItWas) {
  CreatePeople();
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  EXPECT_EQ(records->State(), 1);
  const Error error =
      Raised([&] { records->Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable); });
  EXPECT_EQ(error.Number(), 3705);
  EXPECT_EQ(records->Fields("name").Value(), Variant("Ann"));
  records->Close();
  EXPECT_EQ(records->State(), 0);
  records->Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  EXPECT_EQ(records->State(), 1);
}

TEST_P(RecordsetOpening, OnlyKeysetCursorsWithOptimisticLockingOnATextOrATableAreServed) {
  CreatePeople();
  Recordset records(nullptr);
  EXPECT_EQ(Raised([&] { records.Open("people", connection, 3, 3, 2); }).Number(), 5);
  EXPECT_EQ(Raised([&] { records.Open("people", connection, 1, 1, 2); }).Number(), 5);
  EXPECT_EQ(Raised([&] { records.Open("people", connection, 1, 3, 4); }).Number(), 5);
  EXPECT_EQ(records.State(), 0);
}

TEST_P(RecordsetOpening, WithoutRowsItStandsBeforeTheFirstAndAfterTheLast) {
  CreatePeople();
  const auto records = Opened("select * from people");
  EXPECT_TRUE(records->BOF());
  EXPECT_TRUE(records->Eof());
  EXPECT_EQ(records->recordcount(), 0);
  EXPECT_EQ(Raised([&] { records->MoveFirst(); }).Number(), 3021);
  EXPECT_EQ(Raised([&] { records->MoveNext(); }).Number(), 3021);
  EXPECT_EQ(Raised([&] { records->Fields("name").Value(); }).Number(), 3021);
  EXPECT_EQ(Raised([&] { records->Fields("name") = "Ann"; }).Number(), 3021);
}

TEST_P(RecordsetOpening, WithRowsTheFirstOneIsCurrent) {
  CreatePeople();
  AddPerson("A", "Ann");
  AddPerson("B", "Bob");
  const auto records = Opened("select * from people order by code");
  EXPECT_FALSE(records->BOF());
  EXPECT_FALSE(records->Eof());
  EXPECT_EQ(records->recordcount(), 2);
  EXPECT_EQ(records->Fields("code").Value(), Variant("A"));
}

TEST_P(RecordsetOpening, OnATableItReadsNothingUntilARowIsAskedFor) {
  CreatePeople();
  AddPerson("A", "Ann");
  driver.Restart();
  const auto records = OpenedTable("people");
  EXPECT_THAT(driver.Record(), ElementsAre("Describe people"));
  EXPECT_EQ(records->Fields("name").Value(), Variant("Ann"));
  EXPECT_GE(driver.CountOf("Step"), 1);
  EXPECT_FALSE(records->BOF());
  EXPECT_EQ(records->recordcount(), 1);
}

TEST_P(RecordsetOpening, OnATableItCountsRowsWithoutReadingThem) {
  CreatePeople();
  AddPerson("A", "Ann");
  AddPerson("B", "Bob");
  const auto records = OpenedTable("people");
  driver.Restart();
  EXPECT_EQ(records->recordcount(), 2);
  EXPECT_EQ(driver.CountOf("Value"), 1);
}

TEST_P(RecordsetOpening, AMissingTableIsNamed) {
  Recordset records(nullptr);
  const Error byName =
      Raised([&] { records.Open("nobody", connection, kCursorKeyset, kLockOptimistic, kCommandTable); });
  EXPECT_EQ(byName.Number(), -2147217865);
  EXPECT_THAT(byName.Description(), testing::HasSubstr("nobody"));
  const Error byText =
      Raised([&] { records.Open("select * from nobody", connection, kCursorKeyset, kLockOptimistic, kCommandText); });
  EXPECT_EQ(byText.Number(), -2147217865);
  EXPECT_EQ(byText.DetailOf("statement"), "select * from nobody");
  EXPECT_EQ(records.State(), 0);
}

TEST_P(RecordsetOpening, AStatementWithoutRowsIsRefusedAndNotRun) {
  CreatePeople();
  AddPerson("A", "Ann");
  const Error error = Raised([&] { Opened("delete from people"); });
  EXPECT_EQ(error.Number(), -2147217900);
  EXPECT_EQ(error.DetailOf("statement"), "delete from people");
  EXPECT_THAT(Rows("select code from people"), ElementsAre("A"));
}

TEST_P(RecordsetOpening, ABrokenStatementIsACommandError) {
  const Error error = Raised([&] { Opened("selekt * from people"); });
  EXPECT_EQ(error.Number(), -2147217900);
  EXPECT_EQ(error.DetailOf("statement"), "selekt * from people");
}

TEST_P(RecordsetOpening, ASecondStatementIsRefusedBeforeTheDatabaseSeesAnyOfIt) {
  CreatePeople();
  driver.Restart();
  const Error error = Raised([&] { Opened("select * from people; delete from people"); });
  EXPECT_EQ(error.Number(), -2147217900);
  EXPECT_THAT(driver.Record(), ElementsAre());
  EXPECT_EQ(Opened("select * from people; -- the end\n ")->recordcount(), 0);
}

TEST_P(RecordsetOpening, ATextThatAValueBrokeIsRefusedBeforeTheDatabaseSeesIt) {
  CreatePeople();
  AddPerson("A", "Ann");
  driver.Restart();
  const SqlText broken = SqlText("select * from people where code='").Value("x' or 'a'='a").Append("'");
  EXPECT_EQ(Raised([&] { Opened(broken); }).Number(), -2147217900);
  EXPECT_THAT(driver.Record(), ElementsAre());
}

TEST_P(RecordsetOpening, AClosedConnectionIs3709) {
  Connection closed({&driver}, nullptr);
  Recordset records(nullptr);
  const Error error = Raised([&] { records.Open("people", closed, kCursorKeyset, kLockOptimistic, kCommandTable); });
  EXPECT_EQ(error.Number(), 3709);
  EXPECT_EQ(records.State(), 0);
}

TEST_P(RecordsetOpening, TheActiveConnectionServesWhenOpenNamesNone) {
  CreatePeople();
  Recordset records(nullptr);
  EXPECT_EQ(Raised([&] { records.Open("people", kCursorKeyset, kLockOptimistic, kCommandTable); }).Number(), 3709);
  EXPECT_EQ(records.ActiveConnection(), nullptr);
  records.ActiveConnection(connection);
  EXPECT_EQ(records.ActiveConnection(), &connection);
  records.Open("people", kCursorKeyset, kLockOptimistic, kCommandTable);
  EXPECT_EQ(records.State(), 1);
  EXPECT_EQ(Raised([&] { records.ActiveConnection(connection); }).Number(), 3705);
}

TEST_P(RecordsetOpening, TheConnectionOfAnOpenServesTheNextOneThatNamesNone) {
  CreatePeople();
  Recordset records(nullptr);
  records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  records.Close();
  EXPECT_EQ(records.ActiveConnection(), &connection);
  records.Open("people", kCursorKeyset, kLockOptimistic, kCommandTable);
  EXPECT_EQ(records.State(), 1);
}

TEST_P(RecordsetOpening, ARecordsetThatFailedToOpenCanBeOpened) {
  CreatePeople();
  Recordset records(nullptr);
  Raised([&] { records.Open("nobody", connection, kCursorKeyset, kLockOptimistic, kCommandTable); });
  records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  EXPECT_TRUE(records.BOF());
}

}  // namespace
}  // namespace qmx::test
