// The real tables in each database system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/database.h"
#include "platform/names.h"
#include "schema/dialect.h"
#include "tests/support/driver_under_test.h"

namespace qmx::test {
namespace {

class TablesInEverySystem : public testing::TestWithParam<DriverUnderTest> {
 protected:
  TablesInEverySystem() : base(GetParam().make()), connection({&base->GetDriver()}, nullptr) {
    connection.Open(base->ConnectionText(), "", "");
    const Dialect* dialect = DialectOfSystem(connection.System());
    if (!dialect) throw std::runtime_error("no dialect for " + connection.System());
    for (const LocalTable& table : LocalTables()) {
      connection.Execute(dialect->CreateTable(table));
      for (const std::string& index : dialect->CreateIndexes(table)) connection.Execute(index);
    }
  }

  std::unique_ptr<TestDatabase> base;
  Connection connection;
};
INSTANTIATE_TEST_SUITE_P(Over, TablesInEverySystem, testing::ValuesIn(DriversUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(TablesInEverySystem, KeepTheColumnsTypesAndKeysThatWereWrittenDown) {
  for (const LocalTable& table : LocalTables()) {
    const TableDescription description = connection.Describe(table.name);
    ASSERT_EQ(description.columns.size(), table.columns.size()) << table.name;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
      EXPECT_TRUE(SameName(description.columns[column].name, table.columns[column].name))
          << table.name << '.' << description.columns[column].name;
      EXPECT_EQ(description.columns[column].type, table.columns[column].type)
          << table.name << '.' << table.columns[column].name;
    }
    ASSERT_EQ(description.key.size(), table.key.size()) << table.name;
    for (std::size_t place = 0; place < table.key.size(); ++place) {
      EXPECT_TRUE(SameName(description.columns[description.key[place]].name, table.key[place])) << table.name;
    }
  }
}

TEST_P(TablesInEverySystem, CodesDifferByCaseAndByBlanksBehind) {
  for (const char* code : {"AB", "ab", "AB "}) {
    connection.Execute(SqlText("insert into tsmdm030 (cstp) values ('").Value(code).Append("')"));
  }
  Recordset records(nullptr);
  records.Open("select * from tsmdm030 where cstp='AB'", connection, kCursorKeyset, kLockOptimistic, kCommandText);
  EXPECT_EQ(records.recordcount(), 1);
}

}  // namespace
}  // namespace qmx::test
