#include "platform/progress/row_counter.h"

#include <gtest/gtest.h>

#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

class RowsOfATable : public testing::Test {
 protected:
  RowsOfATable() {
    connection = database.CreateConnection("ADODB.Connection");
    records = database.CreateRecordset("ADODB.Recordset");
    connection->Open("Provider=SQLite;Mode=Create;Data Source=" + folder / "local.db", "", "");
    connection->Execute("create table Kinds (code text not null primary key, name text)");
    connection->Execute("create table tstables (code text, name text)");
  }

  void OpenTable(const std::string& table) {
    records->Open(table, *connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  }
  void OpenRow(const std::string& code, const std::string& table = "Kinds") {
    records->Open("select * from " + table + " where code = '" + code + "'", *connection, kCursorKeyset,
                  kLockOptimistic, kCommandText);
  }
  void Add(const char* code) {
    records->AddNew();
    records->Fields("code") = code;
  }

  TempFolder folder;
  SqliteDriver driver;
  std::atomic<std::int64_t> rows = 0;
  RowCounter counter{"kinds", rows};
  Database database{{&driver}, &counter};
  std::unique_ptr<Connection> connection;
  std::unique_ptr<Recordset> records;
};

TEST_F(RowsOfATable, CountAsTheyAreSaved) {
  OpenTable("kinds");
  Add("A");
  EXPECT_EQ(rows, 0);
  Add("B");
  EXPECT_EQ(rows, 1);
  Add("C");
  EXPECT_EQ(rows, 2);
  records->Update();
  EXPECT_EQ(rows, 3);
  records->Update();  // nothing is pending
  records->Close();
  EXPECT_EQ(rows, 3);
}

TEST_F(RowsOfATable, CountIfCloseSavesTheLast) {
  OpenRow("none");
  Add("A");
  Add("B");
  records->Close();
  EXPECT_EQ(rows, 2);
}

TEST_F(RowsOfATable, CountIfOneIsChanged) {
  connection->Execute("insert into Kinds (code) values ('A')");
  OpenRow("A");
  records->Fields("name") = "new";
  records->Update();
  records->Close();
  EXPECT_EQ(rows, 1);
}

TEST_F(RowsOfATable, DoNotCountIfOneIsOnlyRead) {
  connection->Execute("insert into Kinds (code) values ('A')");
  OpenRow("A");
  EXPECT_FALSE(records->Eof());
  records->Close();
  EXPECT_EQ(rows, 0);
}

TEST_F(RowsOfATable, DoNotCountIfTheyAreDroppedOrRefused) {
  OpenTable("Kinds");
  Add("A");
  Add("A");
  EXPECT_EQ(Raised([&] { records->Update(); }).Number(), errors::kIntegrity);
  records->CancelUpdate();
  records->Close();
  EXPECT_EQ(rows, 1);
}

TEST_F(RowsOfATable, DoNotIncludeThoseOfOtherTables) {
  OpenTable("tstables");
  Add("A");
  records->Update();
  records->Close();
  OpenRow("A", "tstables");
  records->Fields("name") = "new";
  records->Update();
  records->Close();
  EXPECT_EQ(rows, 0);
}

TEST_F(RowsOfATable, AreCountedWhileAnotherRecordSetIsInUse) {
  OpenTable("Kinds");
  Add("A");
  const auto other = database.CreateRecordset("ADODB.Recordset");
  other->Open("select * from tstables", *connection, kCursorKeyset, kLockOptimistic, kCommandText);
  other->Close();
  records->Update();
  EXPECT_EQ(rows, 1);
}

TEST_F(RowsOfATable, CountOfTwoRecordSetsAtOnce) {
  OpenTable("Kinds");
  Add("A");
  const auto other = database.CreateRecordset("ADODB.Recordset");
  other->Open("kinds", *connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  other->AddNew();
  other->Fields("code") = "B";
  other->Update();
  records->Update();
  EXPECT_EQ(rows, 2);
}

TEST_F(RowsOfATable, CountIfMovingOnSavesOne) {
  connection->Execute("insert into Kinds (code) values ('A')");
  OpenRow("A");
  records->Fields("name") = "new";
  records->MoveNext();
  EXPECT_EQ(rows, 1);
}

TEST_F(RowsOfATable, CountIfNoValueDiffers) {
  connection->Execute("insert into Kinds values ('A', 'old')");
  OpenRow("A");
  records->Fields("name") = "old";
  records->Update();
  EXPECT_EQ(rows, 1);
}

TEST_F(RowsOfATable, CostNothingForTheirColumns) { EXPECT_FALSE(counter.HearsOfColumns()); }

TEST_F(RowsOfATable, AreBeingDeletedWhileAStatementDeletesThem) {
  EXPECT_FALSE(counter.IsDeleting());
  counter.Executing("DELETE FROM KINDS WHERE 1=1");
  EXPECT_TRUE(counter.IsDeleting());
  counter.Executed("DELETE FROM KINDS WHERE 1=1", 3, nullptr);
  EXPECT_FALSE(counter.IsDeleting());
  counter.Executing("delete from kindship where 1=1");
  EXPECT_FALSE(counter.IsDeleting());
  connection->Execute("delete from Kinds");
  EXPECT_FALSE(counter.IsDeleting());
}

}  // namespace
}  // namespace qmx::test
