// Rows that are added: when they are saved, when they are dropped, and what their failures leave.
#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RecordsetWriting : public RecordSetTest {
 protected:
  void SetUp() override { CreatePeople(); }

  std::vector<std::string> People() { return Rows("select code, name from people order by code"); }
};
INSTANTIATE_TEST_SUITE_P(Over, RecordsetWriting, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(RecordsetWriting, AddNewStartsARowThatUpdateSaves) {
  const auto records = OpenedTable("people");
  records->AddNew();
  EXPECT_FALSE(records->BOF());
  EXPECT_FALSE(records->Eof());
  records->Fields("code") = "A";
  records->Fields("name") = "Ann";
  EXPECT_THAT(People(), ElementsAre());
  records->Update();
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
  EXPECT_EQ(records->Fields("name").Value(), Variant("Ann"));
}

TEST_P(RecordsetWriting, AddNewSavesTheRowBefore) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  records->AddNew();
  EXPECT_THAT(People(), ElementsAre("A|null"));
  records->Fields("code") = "B";
  records->Update();
  EXPECT_THAT(People(), ElementsAre("A|null", "B|null"));
}

TEST_P(RecordsetWriting, AddNewSavesAPendingEditToo) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  records->Fields("name") = "Anna";
  records->AddNew();
  EXPECT_THAT(People(), ElementsAre("A|Anna"));
}

TEST_P(RecordsetWriting, MovingSavesWhatIsPending) {
  AddPerson("A", "Ann");
  AddPerson("B", "Bob");
  const auto records = Opened("select * from people order by code");
  records->Fields("name") = "Anna";
  records->MoveNext();
  EXPECT_THAT(People(), ElementsAre("A|Anna", "B|Bob"));
  records->Fields("name") = "Bert";
  records->MoveFirst();
  EXPECT_THAT(People(), ElementsAre("A|Anna", "B|Bert"));
}

TEST_P(RecordsetWriting, AnAssignedValueIsReadBeforeItIsSavedAndTheOldOneAfterItIsDropped) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  records->Fields("name") = "Anna";
  EXPECT_EQ(records->Fields("name").Value(), Variant("Anna"));
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
  records->CancelUpdate();
  EXPECT_EQ(records->Fields("name").Value(), Variant("Ann"));
}

TEST_P(RecordsetWriting, UpdateWithNothingPendingDoesNothing) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  driver.Restart();
  records->Update();
  EXPECT_THAT(driver.Record(), ElementsAre());
}

TEST_P(RecordsetWriting, SavesAPendingNewRowWhenItIsClosed) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  records->Close();
  EXPECT_EQ(records->State(), 0);
  EXPECT_THAT(People(), ElementsAre("A|null"));
}

TEST_P(RecordsetWriting, CloseCommitsOnlyWhatWasWritten) {
  AddPerson("A", "Ann");
  const auto read = Opened("select * from people");
  driver.Restart();
  read->Close();
  EXPECT_EQ(driver.CountOf("Commit"), 0);

  const auto changed = Opened("select * from people");
  changed->Fields("name") = "Anna";
  changed->Update();
  driver.Restart();
  changed->Close();
  EXPECT_EQ(driver.CountOf("Commit"), 1);
}

TEST_P(RecordsetWriting, DropsAPendingEditWhenItIsClosed) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  records->Fields("name") = "Anna";
  records->Close();
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
}

TEST_P(RecordsetWriting, DropsWhatIsPendingWhenItIsDestroyed) {
  AddPerson("A", "Ann");
  {
    const auto records = Opened("select * from people");
    records->Fields("name") = "Anna";
  }
  {
    const auto records = OpenedTable("people");
    records->AddNew();
    records->Fields("code") = "B";
  }
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
}

TEST_P(RecordsetWriting, CancelUpdateDropsANewRowAndMakesTheOneBeforeCurrentAgain) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  records->AddNew();
  records->Fields("code") = "B";
  EXPECT_EQ(records->Fields("code").Value(), Variant("B"));
  records->CancelUpdate();
  EXPECT_EQ(records->Fields("code").Value(), Variant("A"));
  records->Close();
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
}

TEST_P(RecordsetWriting, CancelUpdateDropsAnEdit) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  records->Fields("name") = "Anna";
  records->CancelUpdate();
  EXPECT_EQ(records->Fields("name").Value(), Variant("Ann"));
  records->Update();
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
}

TEST_P(RecordsetWriting, OnlyAssignedColumnsAreInserted) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  records->Update();
  records->AddNew();
  records->Fields("code") = "B";
  records->Fields("visits") = Variant::Null();
  records->Update();
  EXPECT_THAT(Rows("select code, visits from people order by code"), ElementsAre("A|7", "B|null"));
}

TEST_P(RecordsetWriting, AColumnThatWasNeverAssignedReadsAsNullFirstAndThenAsTheDatabaseFilledItIn) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  EXPECT_TRUE(records->Fields("visits").Value().IsNull());
  records->Update();
  EXPECT_EQ(records->Fields("visits").Value().ToInt32(), 7);
}

TEST_P(RecordsetWriting, ANewRowWithoutAssignedColumnsIsSaved) {
  connection.Execute("create table notes (note varchar(20))");
  const auto records = OpenedTable("notes");
  records->AddNew();
  records->Update();
  EXPECT_THAT(Rows("select * from notes"), ElementsAre("null"));
}

TEST_P(RecordsetWriting, ManyRowsNeedOneStatementAndNothingIsRead) {
  const auto records = OpenedTable("people");
  driver.Restart();
  for (int number = 0; number < 500; ++number) {
    records->AddNew();
    records->Fields("code") = number;
    records->Fields("floor") = number;
  }
  records->Update();
  EXPECT_EQ(driver.CountOf("Prepare"), 1);
  EXPECT_EQ(driver.CountOf("Prepare insert"), 1);
  EXPECT_EQ(driver.CountOf("Step"), 500);
  EXPECT_EQ(driver.CountOf("Value"), 0);
  EXPECT_EQ(records->recordcount(), 500);
  EXPECT_THAT(Rows("select count(*), sum(floor) from people"), ElementsAre("500|124750"));
}

TEST_P(RecordsetWriting, EachSetOfAssignedColumnsHasItsOwnStatementAlsoAcrossRecordsets) {
  driver.Restart();
  for (int round = 0; round < 3; ++round) {
    const auto records = OpenedTable("people");
    records->AddNew();
    records->Fields("code") = "A" + std::to_string(round);
    records->AddNew();
    records->Fields("code") = "B" + std::to_string(round);
    records->Fields("name") = "Bob";
    records->Close();
  }
  EXPECT_EQ(driver.CountOf("Prepare insert"), 2);
  EXPECT_EQ(driver.CountOf("Describe"), 1);
  EXPECT_THAT(People(), ElementsAre("A0|null", "A1|null", "A2|null", "B0|Bob", "B1|Bob", "B2|Bob"));
}

TEST_P(RecordsetWriting, AddedRowsAreCountedAndCanBeWalkedTo) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  records->AddNew();
  records->Fields("code") = "B";
  EXPECT_EQ(records->recordcount(), 1);
  records->Update();
  EXPECT_EQ(records->recordcount(), 2);
  EXPECT_EQ(records->Fields("code").Value(), Variant("B"));
  records->MoveFirst();
  EXPECT_EQ(records->Fields("code").Value(), Variant("A"));
  records->MoveNext();
  EXPECT_EQ(records->Fields("code").Value(), Variant("B"));
  records->MoveNext();
  EXPECT_TRUE(records->Eof());
}

TEST_P(RecordsetWriting, AfterTheLastAddedRowOfATableComesTheEnd) {
  AddPerson("A", "Ann");
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "B";
  records->MoveNext();
  EXPECT_TRUE(records->Eof());
  EXPECT_FALSE(records->BOF());
  EXPECT_EQ(records->recordcount(), 2);
  EXPECT_EQ(Raised([&] { records->MoveNext(); }).Number(), 3021);
  records->MoveFirst();
  int rows = 0;
  for (; !records->Eof(); records->MoveNext()) ++rows;
  EXPECT_EQ(rows, 2);
}

TEST_P(RecordsetWriting, ADuplicateKeyIsAnIntegrityViolationThatLeavesTheRowPending) {
  AddPerson("A", "Ann");
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "B";
  records->AddNew();
  records->Fields("code") = "A";
  const Error error = Raised([&] { records->Update(); });
  EXPECT_EQ(error.Number(), -2147217873);
  EXPECT_EQ(error.DetailOf("table"), "people");
  EXPECT_EQ(error.DetailOf("key"), "code='A'");
  EXPECT_THAT(error.DetailOf("statement"), HasSubstr("insert into"));
  EXPECT_THAT(People(), ElementsAre("A|Ann", "B|null"));
  records->Fields("code") = "C";  // it is still there to be corrected
  records->Update();
  EXPECT_THAT(People(), ElementsAre("A|Ann", "B|null", "C|null"));
}

TEST_P(RecordsetWriting, ARowThatCannotBeSavedIsDroppedByCancelUpdateSoThatCloseSucceeds) {
  AddPerson("A", "Ann");
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  EXPECT_EQ(Raised([&] { records->AddNew(); }).Number(), -2147217873);
  records->CancelUpdate();
  records->Close();
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
}

TEST_P(RecordsetWriting, WhenCloseCannotSaveTheNewRowItRaisesAndTheRecordsetIsClosed) {
  AddPerson("A", "Ann");
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  EXPECT_EQ(Raised([&] { records->Close(); }).Number(), -2147217873);
  EXPECT_EQ(records->State(), 0);
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
  records->Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  EXPECT_EQ(records->recordcount(), 1);
}

TEST_P(RecordsetWriting, AMissingRequiredColumnIsAnIntegrityViolation) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("name") = "Nobody";
  EXPECT_EQ(Raised([&] { records->Update(); }).Number(), -2147217873);
}

TEST_P(RecordsetWriting, AStatementThatCannotBePreparedIsShown) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  driver.Restart();
  driver.FailAt(1);
  const Error error = Raised([&] { records->Update(); });
  EXPECT_THAT(error.DetailOf("statement"), HasSubstr("insert into"));
  EXPECT_EQ(error.DetailOf("key"), "code='A'");
}

TEST_P(RecordsetWriting, RowsOfAJoinOrAnExpressionAreReadOnly) {
  AddPerson("A", "Ann");
  for (const char* query :
       {"select p.code, q.name from people p, people q", "select code from people", "select count(*) from people",
        "select distinct * from people", "select * from people p", "select * from people union select * from people"}) {
    const auto records = Opened(query);
    const Error adding = Raised([&] { records->AddNew(); });
    EXPECT_EQ(adding.Number(), 3219) << query;
    EXPECT_EQ(adding.DetailOf("statement"), query);
    EXPECT_EQ(Raised([&] { records->Fields(0) = "B"; }).Number(), 3219) << query;
    records->Update();
    records->Close();
  }
  EXPECT_THAT(People(), ElementsAre("A|Ann"));
}

TEST_P(RecordsetWriting, ARecordsetOnAConditionAddsRowsToItsTable) {
  const auto records = Opened("select *  from people where people.code = 'none' order by people.code ");
  records->AddNew();
  records->Fields("code") = "A";
  records->Update();
  records->Close();
  EXPECT_THAT(People(), ElementsAre("A|null"));
}

TEST_P(RecordsetWriting, ColumnNamesAreWrittenInAnyCase) {
  const auto records = OpenedTable("PEOPLE");
  records->AddNew();
  records->Fields("CODE") = "A";
  records->Fields("line") = 3;
  records->Update();
  EXPECT_THAT(Rows("select code, LINE from people"), ElementsAre("A|3"));
}

TEST_P(RecordsetWriting, APendingRowIsDroppedWhenTheConnectionCloses) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  connection.Close();
  EXPECT_EQ(Raised([&] { records->Update(); }).Number(), 3709);
  EXPECT_EQ(Raised([&] { records->AddNew(); }).Number(), 3709);
  EXPECT_EQ(Raised([&] { records->Fields("code") = "B"; }).Number(), 3709);
  records->Close();
  EXPECT_EQ(records->State(), 0);
  EXPECT_THAT(People(), ElementsAre());
}

TEST_P(RecordsetWriting, RowsSavedBeforeAnyFailingOperationStay) {
  int failures = 0;
  for (std::int64_t operation = 1;; ++operation) {
    connection.Execute("delete from people");
    driver.Restart();
    driver.FailAt(operation);
    std::size_t saved = 0;
    try {
      Connection other({&driver}, nullptr);
      other.Open(base->ConnectionText(), "", "");
      Recordset records(nullptr);
      records.Open("people", other, kCursorKeyset, kLockOptimistic, kCommandTable);
      for (const char* code : {"A", "B", "C"}) {
        records.AddNew();
        records.Fields("code") = code;
        records.Update();
        ++saved;
      }
      records.Close();
      other.Close();
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), -2147467259);
    }
    driver.FailAt(0);
    EXPECT_EQ(People().size(), saved) << "operation " << operation;
    if (!driver.HasFailed()) break;
    ++failures;
  }
  EXPECT_EQ(failures, 13);  // four to get ready, three rows of a value and a step, three to close
}

}  // namespace
}  // namespace qmx::test
