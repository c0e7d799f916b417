#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/database.h"
#include "platform/error.h"
#include "platform/sqlite/driver.h"
#include "schema/dialect.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

// The real tables in a real file.
class SqliteTables : public testing::Test {
 protected:
  SqliteTables() : connection({&driver}, nullptr) {
    connection.Open("Provider=SQLite;Mode=Create;Data Source=" + folder / "local.db", "", "");
    for (const LocalTable& table : LocalTables()) {
      connection.Execute(SqliteDialect().CreateTable(table));
      for (const std::string& index : SqliteDialect().CreateIndexes(table)) connection.Execute(index);
    }
  }

  std::unique_ptr<Recordset> Opened(const SqlText& query) {
    auto records = std::make_unique<Recordset>(nullptr);
    records->Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records;
  }

  TempFolder folder;
  SqliteDriver driver;
  Connection connection;
};

TEST_F(SqliteTables, KeepTheColumnsTypesAndKeysThatWereWrittenDown) {
  for (const LocalTable& table : LocalTables()) {
    const TableDescription description = connection.Describe(table.name);
    ASSERT_EQ(description.columns.size(), table.columns.size()) << table.name;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
      EXPECT_EQ(description.columns[column].name, table.columns[column].name) << table.name;
      EXPECT_EQ(description.columns[column].type, table.columns[column].type)
          << table.name << '.' << table.columns[column].name;
    }
    ASSERT_EQ(description.key.size(), table.key.size()) << table.name;
    for (std::size_t place = 0; place < table.key.size(); ++place) {
      EXPECT_EQ(description.columns[description.key[place]].name, table.key[place]);
    }
  }
}

TEST_F(SqliteTables, AControlRecordStartsAtZeroAndWithoutALastUpdate) {
  connection.Execute("insert into tstables (TableName) values ('tsmdm030')");
  const auto record = Opened("select * from tstables where tablename = 'tsmdm030'");
  for (const char* column : {"in_use", "freq", "reqd", "syme"}) {
    EXPECT_EQ(record->Fields(column).Value().ToInt16(), 0) << column;
  }
  EXPECT_TRUE(record->Fields("lutm").Value().IsNull());
}

TEST_F(SqliteTables, TheSameIntervalMayBeWrittenTwice) {
  for (int round = 0; round < 2; ++round) {
    connection.Execute("insert into tscalender (ccal,sttm,entm) Values ('C','2001-03-05 08:00:00','2001-03-06')");
  }
  const auto rows = Opened("select * from tscalender");
  EXPECT_EQ(rows->recordcount(), 2);
  EXPECT_EQ(rows->Fields("entm").Value(), Variant(DateTime::FromDate(2001, 3, 6)));
}

TEST_F(SqliteTables, IntervalsAreFoundByTheirCalendarThroughAnIndex) {
  const auto plan = Opened("explain query plan delete from tscalender where tscalender.ccal = 'C'");
  EXPECT_THAT(plan->Fields("detail").Value().ToText(), testing::HasSubstr("tscalender_by_ccal"));
}

TEST_F(SqliteTables, AKeyStandsOnceAndLettersInBothCasesDiffer) {
  connection.Execute("insert into tsmdm030 (cstp) values ('A')");
  connection.Execute("insert into tsmdm030 (cstp) values ('a')");
  EXPECT_EQ(Raised([&] { connection.Execute("insert into tsmdm030 (cstp) values ('A')"); }).Number(), -2147217873);
  EXPECT_EQ(Raised([&] { connection.Execute("insert into tsmdm030 (cstp) values (null)"); }).Number(), -2147217873);
}

TEST_F(SqliteTables, AnIntervalOfACalendarIsKnownByItsStartToTheMinute) {
  const char* const first = "insert into tcccp030 (ccal,ract,stdt,sttm) values ('C','W','2026-03-05',800)";
  connection.Execute(first);
  connection.Execute("insert into tcccp030 (ccal,ract,stdt,sttm) values ('C','W','2026-03-05',1300)");
  connection.Execute("insert into tcccp030 (ccal,ract,stdt,sttm) values ('C','W','2026-03-06',800)");
  EXPECT_EQ(Raised([&] { connection.Execute(first); }).Number(), -2147217873);
}

TEST_F(SqliteTables, TheCityAndTheNameOfAnAddressAreTwoColumns) {
  connection.Execute("insert into tccom130 (cadr, nama, name) values ('1','Miller','Rome')");
  const auto address = Opened("select * from tccom130");
  EXPECT_EQ(address->Fields("Name").Value(), Variant("Rome"));
  EXPECT_EQ(address->Fields("nama").Value(), Variant("Miller"));
}

TEST_F(SqliteTables, TakeWhateverHasATextForACodeAndWhateverIsANumberForAQuantity) {
  Recordset orders(nullptr);
  orders.Open("tssoc200", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
  orders.AddNew();
  orders.Fields("orno") = std::string(90, 'Z');
  orders.Fields("osta") = 5;
  orders.Fields("ordu") = "1.25";
  orders.Fields("emer") = static_cast<std::uint8_t>(1);
  orders.Fields("ordt") = DateTime::FromDate(2026, 11, 20);
  orders.Close();
  const auto order = Opened("select * from tssoc200");
  EXPECT_EQ(order->Fields("orno").Value(), Variant(std::string(90, 'Z')));
  EXPECT_EQ(order->Fields("osta").Value(), Variant("5"));
  EXPECT_EQ(order->Fields("ordu").Value(), Variant(1.25));
  EXPECT_EQ(order->Fields("emer").Value(), Variant(static_cast<std::int16_t>(1)));
  EXPECT_EQ(order->Fields("ordt").Value(), Variant(DateTime::FromDate(2026, 11, 20)));
}

}  // namespace
}  // namespace qmx::test
