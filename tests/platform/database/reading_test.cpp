#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

class RecordsetReading : public RecordSetTest {
 protected:
  void SetUp() override {
    CreatePeople();
    AddPerson("A", "Ann");
    AddPerson("B", "Bob");
    AddPerson("C", "Cid");
  }
};
INSTANTIATE_TEST_SUITE_P(Over, RecordsetReading, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(RecordsetReading, WalksFromTheFirstRowPastTheLast) {
  const auto records = Opened("select * from people order by code");
  std::string codes;
  for (records->MoveFirst(); !records->Eof(); records->MoveNext()) codes += records->Fields("code").Value().ToText();
  EXPECT_EQ(codes, "ABC");
  EXPECT_FALSE(records->BOF());
  EXPECT_EQ(Raised([&] { records->MoveNext(); }).Number(), 3021);
  EXPECT_EQ(Raised([&] { records->Fields("code").Value(); }).Number(), 3021);
  records->MoveFirst();
  EXPECT_EQ(records->Fields("code").Value(), Variant("A"));
}

TEST_P(RecordsetReading, ShowsNothingOfARecordSetBeforeIt) {
  const auto records = Opened("select * from people where code='A'");
  records->Fields("floor").Value(3);
  records->Fields("name").Value("A name that is long enough to be kept elsewhere");
  records->Close();
  records->Open("select * from people where code='B'", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(RowText(*records), "B|Bob|null|null|null|7|null");
  records->AddNew();
  EXPECT_EQ(RowText(*records), "null|null|null|null|null|null|null");
  records->CancelUpdate();
  records->Close();
  records->Open("select name, code from people where code<>'A' order by code", connection, kCursorKeyset,
                kLockOptimistic, kCommandText);
  EXPECT_EQ(RowText(*records), "Bob|B");
  records->MoveNext();
  EXPECT_EQ(RowText(*records), "Cid|C");
}

TEST_P(RecordsetReading, NamesItsOwnStatementAfterAnotherCouldNotBeOpened) {
  const auto records = Opened("select name from people");
  EXPECT_EQ(Raised([&] {
              records->Open("select born from people", connection, kCursorKeyset, kLockOptimistic, kCommandText);
            }).Number(),
            3705);
  EXPECT_THAT(Raised([&] { records->Fields("code"); }).Description(), testing::HasSubstr("select name from people"));
}

TEST_P(RecordsetReading, WalksATableOpenedByName) {
  const auto records = OpenedTable("people");
  int rows = 0;
  for (; !records->Eof(); records->MoveNext()) ++rows;
  EXPECT_EQ(rows, 3);
}

TEST_P(RecordsetReading, FindsColumnsByNameInAnyCaseAndByIndex) {
  const auto records = Opened("select * from people order by code");
  EXPECT_EQ(records->Fields("CODE").Value(), Variant("A"));
  EXPECT_EQ(records->Fields("Name").Value(), Variant("Ann"));
  EXPECT_EQ(records->Fields(1).Value(), Variant("Ann"));
  EXPECT_EQ(records->Fields(1).Name(), "name");
}

TEST_P(RecordsetReading, AMissingColumnIsNamed) {
  const auto records = Opened("select * from people");
  const Error error = Raised([&] { records->Fields("nickname"); });
  EXPECT_EQ(error.Number(), 3265);
  EXPECT_THAT(error.Description(), testing::HasSubstr("nickname"));
  EXPECT_THAT(error.Description(), testing::HasSubstr("people"));
  EXPECT_EQ(error.DetailOf("column"), "nickname");
  EXPECT_EQ(Raised([&] { records->Fields(7); }).Number(), 3265);
}

TEST_P(RecordsetReading, OneColumnConstantServesEveryRecordsetWhereverItsColumnStands) {
  const Column name = "name";
  const auto people = Opened("select * from people order by code");
  const auto turned = Opened("select name, code from people where code='B'");
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(people->Fields(name).Value(), Variant("Ann"));
    EXPECT_EQ(turned->Fields(name).Value(), Variant("Bob"));
  }
  const auto without = Opened("select code from people");
  EXPECT_EQ(Raised([&] { without->Fields(name); }).Number(), 3265);
}

TEST_P(RecordsetReading, TheDatabaseAppliesConditionsAndOrder) {
  const auto records = Opened(SqlText("select * from people where code='").Value("B").Append("'"));
  EXPECT_EQ(records->recordcount(), 1);
  EXPECT_EQ(records->Fields("name").Value(), Variant("Bob"));
}

TEST_P(RecordsetReading, ExpressionsHaveOneRowAndAreNullWithoutAny) {
  EXPECT_EQ(Opened("select count(*) from people")->Fields(0).Value().ToInt32(), 3);
  const auto youngest = Opened("select max(born) from people");
  EXPECT_EQ(youngest->recordcount(), 1);
  EXPECT_TRUE(youngest->Fields(0).Value().IsNull());
}

TEST_P(RecordsetReading, AnExpressionOverDatesReadsAsADate) {
  connection.Execute("update people set born='2001-02-03' where code='A'");
  connection.Execute("update people set born='1999-12-31 23:59:58' where code='B'");
  const auto oldest = Opened("select min(people.born) from people");
  EXPECT_EQ(oldest->Fields(0).Value().ToDateTime(), DateTime::FromDate(1999, 12, 31).PlusTime(23, 59, 58));
}

TEST_P(RecordsetReading, DistinctRowsAreCountedExactly) {
  connection.Execute("update people set name='Ann'");
  const auto names = Opened("select DISTINCT people.name  from people WHERE people.name <>  '' ");
  EXPECT_EQ(names->recordcount(), 1);
  EXPECT_EQ(names->Fields(0).Value(), Variant("Ann"));
}

TEST_P(RecordsetReading, RowsThatWereReadStayReadableWhenTheConnectionCloses) {
  const auto records = Opened("select * from people order by code");
  connection.Close();
  EXPECT_EQ(records->State(), 1);
  records->MoveNext();
  EXPECT_EQ(records->Fields("name").Value(), Variant("Bob"));
  EXPECT_EQ(records->recordcount(), 3);
  records->Close();
  EXPECT_EQ(records->State(), 0);
}

TEST_P(RecordsetReading, RowsThatWereNotReadNeedTheConnection) {
  const auto records = OpenedTable("people");
  connection.Close();
  EXPECT_EQ(Raised([&] { records->BOF(); }).Number(), 3709);
  EXPECT_EQ(Raised([&] { records->recordcount(); }).Number(), 3709);
  EXPECT_EQ(Raised([&] { records->MoveFirst(); }).Number(), 3709);
  EXPECT_EQ(records->State(), 1);
  records->Close();
}

TEST_P(RecordsetReading, AFieldOutlivesNeitherItsRowNorItsRecordset) {
  const auto records = Opened("select * from people order by code");
  const Field name = records->Fields("name");
  records->MoveNext();
  EXPECT_EQ(name.Value(), Variant("Bob"));
  records->Close();
  EXPECT_EQ(Raised([&] { name.Value(); }).Number(), 3704);
  records->Open("select code from people", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(Raised([&] { name.Value(); }).Number(), 3265);
}

}  // namespace
}  // namespace qmx::test
