// What the tests of record sets and connections share: a fresh database under each driver, with an open connection
// whose driver operations are recorded.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/error.h"
#include "tests/support/driver_under_test.h"
#include "tests/support/faulty_driver.h"
#include "tests/support/raised.h"

namespace qmx::test {

class RecordSetTest : public testing::TestWithParam<DriverUnderTest> {
 protected:
  RecordSetTest()
      : base(GetParam().make()), driver(base->GetDriver()), database({&driver}), connection({&driver}, nullptr) {
    connection.Open(base->ConnectionText(), "", "");
  }

  // A table with a key, of each kind of column, one of which the database fills in by itself.
  void CreatePeople() {
    connection.Execute("create table people (code varchar(20) not null primary key, name varchar(100), born " +
                       GetParam().dateTimeType +
                       ", floor smallint, weight double precision, visits integer default 7, Line integer)");
  }

  void AddPerson(const char* code, const char* name) {
    connection.Execute(
        SqlText("insert into people (code,name) values ('").Value(code).Append("','").Value(name).Append("')"));
  }

  std::unique_ptr<Recordset> Opened(const SqlText& statement) {
    auto records = std::make_unique<Recordset>(nullptr);
    records->Open(statement, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records;
  }

  std::unique_ptr<Recordset> OpenedTable(const char* table) {
    auto records = std::make_unique<Recordset>(nullptr);
    records->Open(table, connection, kCursorKeyset, kLockOptimistic, kCommandTable);
    return records;
  }

  // What another program sees: each row's values as text, joined by "|"; null is "null".
  std::vector<std::string> Rows(const SqlText& query) {
    Connection other({&base->GetDriver()}, nullptr);
    other.Open(base->ConnectionText(), "", "");
    Recordset records(nullptr);
    records.Open(query, other, kCursorKeyset, kLockOptimistic, kCommandText);
    std::vector<std::string> rows;
    for (; !records.Eof(); records.MoveNext()) rows.push_back(RowText(records));
    return rows;
  }

  static std::string RowText(Recordset& records) {
    std::string text;
    for (std::size_t column = 0;; ++column) {
      try {
        records.Fields(column);
      } catch (const Error&) {
        return text;
      }
      const Variant value = records.Fields(column).Value();
      text += (column > 0 ? "|" : "") + (value.IsNull() ? "null" : value.ToText());
    }
  }

  std::unique_ptr<TestDatabase> base;
  FaultyDriver driver;
  Database database;
  Connection connection;
};

inline std::string DriverName(const testing::TestParamInfo<DriverUnderTest>& info) { return info.param.name; }

}  // namespace qmx::test
