// Rows that are changed: what an update writes, and how it finds its row again.
#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RecordsetEditing : public RecordSetTest {
 protected:
  void SetUp() override { CreatePeople(); }

  std::vector<std::string> People() { return Rows("select code, name from people order by code"); }

  // Two rows alike and one of its own, in a table without a key.
  void CreateVisits() {
    connection.Execute("create table visits (code varchar(20), place varchar(20))");
    connection.Execute("insert into visits values ('A','Rome')");
    connection.Execute("insert into visits values ('A','Rome')");
    connection.Execute("insert into visits values ('B',null)");
  }
  std::vector<std::string> Visits() { return Rows("select * from visits order by code, place"); }
};
INSTANTIATE_TEST_SUITE_P(Over, RecordsetEditing, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(RecordsetEditing, UpdateWritesTheDifferingColumnsOnly) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  driver.Restart();
  records->Fields("code") = "A";
  records->Fields("name") = "Anna";
  records->Fields("visits") = 7;
  records->Update();
  EXPECT_EQ(driver.CountOf("Prepare update"), 1);
  EXPECT_EQ(driver.CountOf("Bind"), 2);  // the name and the key
  EXPECT_THAT(People(), ElementsAre("A|Anna"));
  EXPECT_EQ(records->Fields("name").Value(), Variant("Anna"));
}

TEST_P(RecordsetEditing, UpdateOfValuesThatAreThereAlreadyWritesNothing) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  driver.Restart();
  records->Fields("name") = "Ann";
  records->Fields("weight") = Variant::Null();
  records->Update();
  EXPECT_THAT(driver.Record(), ElementsAre());
}

TEST_P(RecordsetEditing, UpdateStatementsArePreparedOnce) {
  AddPerson("A", "Ann");
  AddPerson("B", "Bob");
  driver.Restart();
  for (const char* code : {"A", "B"}) {
    const auto records = Opened(SqlText("select * from people where code='").Value(code).Append("'"));
    records->Fields("name") = "Eve";
    records->Update();
    records->Close();
  }
  EXPECT_EQ(driver.CountOf("Prepare update"), 1);
  EXPECT_THAT(People(), ElementsAre("A|Eve", "B|Eve"));
}

TEST_P(RecordsetEditing, AKeyCanBeChangedAndTheRowWrittenAgain) {
  AddPerson("A", "Ann");
  const auto records = Opened("select * from people");
  records->Fields("code") = "Z";
  records->Update();
  records->Fields("name") = "Zoe";
  records->Update();
  EXPECT_THAT(People(), ElementsAre("Z|Zoe"));
}

TEST_P(RecordsetEditing, ARowThatWasJustAddedCanBeEdited) {
  const auto records = OpenedTable("people");
  records->AddNew();
  records->Fields("code") = "A";
  records->Update();
  records->Fields("name") = "Ann";
  records->Update();
  EXPECT_THAT(Rows("select code, name, visits from people"), ElementsAre("A|Ann|7"));
}

TEST_P(RecordsetEditing, ARowThatIsGoneIsReportedAndNothingIsWritten) {
  AddPerson("A", "Ann");
  AddPerson("B", "Bob");
  const auto records = Opened("select * from people where code='A'");
  connection.Execute("delete from people where code='A'");
  records->Fields("name") = "Anna";
  const Error error = Raised([&] { records->Update(); });
  EXPECT_EQ(error.Number(), -2147217864);
  EXPECT_EQ(error.DetailOf("table"), "people");
  EXPECT_EQ(error.DetailOf("key"), "code='A'");
  EXPECT_THAT(error.DetailOf("statement"), HasSubstr("update"));
  EXPECT_THAT(People(), ElementsAre("B|Bob"));
}

TEST_P(RecordsetEditing, WithoutAKeyARowIsFoundByAllItsValuesNullsAmongThem) {
  CreateVisits();
  const auto records = Opened("select * from visits where code='B'");
  records->Fields("place") = "Oslo";
  records->Update();
  EXPECT_THAT(Visits(), ElementsAre("A|Rome", "A|Rome", "B|Oslo"));
}

TEST_P(RecordsetEditing, RowsThatAreAlikeCannotBeWrittenAndStayAsTheyAre) {
  CreateVisits();
  const auto records = Opened("select * from visits where code='A'");
  records->Fields("place") = "Oslo";
  const Error error = Raised([&] { records->Update(); });
  EXPECT_EQ(error.Number(), -2147217864);
  EXPECT_EQ(error.DetailOf("key"), "code='A', place='Rome'");
  records->CancelUpdate();
  EXPECT_EQ(records->Fields("place").Value(), Variant("Rome"));
  EXPECT_THAT(Visits(), ElementsAre("A|Rome", "A|Rome", "B|null"));
  // The connection is as good as before: nothing is left open.
  connection.Execute("delete from visits where code='A'");
  EXPECT_THAT(Visits(), ElementsAre("B|null"));
}

TEST_P(RecordsetEditing, AUniqueIndexServesAsTheKeyIfThereIsNoOther) {
  connection.Execute("create table badges (number integer not null, owner varchar(20))");
  connection.Execute("create unique index badges_number on badges (number)");
  connection.Execute("insert into badges values (1,'Ann')");
  const auto records = Opened("select * from badges");
  records->Fields("owner") = "Bob";
  driver.Restart();
  records->Update();
  EXPECT_EQ(driver.CountOf("Bind"), 2);
  EXPECT_EQ(driver.CountOf("Begin"), 0);
  EXPECT_THAT(Rows("select * from badges"), ElementsAre("1|Bob"));
}

}  // namespace
}  // namespace qmx::test
