// qmxadmin as its user has it, over a local database with all tables on each of the systems.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"
#include "schema/dialect.h"
#include "tests/support/driver_under_test.h"
#include "tests/support/process.h"
#include "tests/support/systems_under_test.h"

namespace qmx::test {

class AdminOnASystem : public testing::TestWithParam<DriverUnderTest> {
 protected:
  AdminOnASystem() : base_(GetParam().make()), connection_({&base_->GetDriver()}, nullptr) {
    connection_.Open(base_->ConnectionText(), "", "");
    for (const LocalTable& table : LocalTables()) {
      connection_.Execute(DialectOfSystem(connection_.System())->CreateTable(table));
    }
  }

  std::string ConnectionText() const { return base_->ConnectionText(); }
  std::map<std::string, std::string> Environment() const {
    return {{"QMX_CONNECTION", ConnectionText()}, {"QMX_DATABASE", ""}};
  }

  // The command's arguments without CONNECTION and DATABASE.
  Process Admin(const std::vector<std::string>& arguments) { return test::Run(QMX_ADMIN, arguments, Environment()); }

  void Execute(const std::string& statement) { connection_.Execute(statement); }

  // The first column of the rows, "NULL" for null.
  std::vector<std::string> Column(const std::string& query) {
    std::vector<std::string> values;
    Recordset rows(nullptr);
    rows.Open(query, connection_, kCursorKeyset, kLockOptimistic, kCommandText);
    for (; !rows.Eof(); rows.MoveNext()) {
      const Variant value = rows.Fields(std::size_t{0}).Value();
      values.push_back(value.IsNull() ? "NULL" : value.ToText());
    }
    rows.Close();
    return values;
  }

 private:
  std::unique_ptr<TestDatabase> base_;
  Connection connection_;
};

}  // namespace qmx::test
