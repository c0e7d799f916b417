#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/database.h"
#include "platform/error.h"
#include "tests/support/driver_under_test.h"
#include "tests/support/process.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class QmxAdminInitOnASystem : public testing::TestWithParam<DriverUnderTest> {
 protected:
  QmxAdminInitOnASystem() : base(GetParam().make()) {}

  Process Init(const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"init", base->ConnectionText(), ""};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return test::Run(QMX_ADMIN, arguments);
  }

  void Execute(const char* statement) {
    Connection connection({&base->GetDriver()}, nullptr);
    connection.Open(base->ConnectionText(), "", "");
    connection.Execute(statement);
    connection.Close();
  }

  int Found(const char* query) {
    Connection connection({&base->GetDriver()}, nullptr);
    connection.Open(base->ConnectionText(), "", "");
    Recordset records(nullptr);
    records.Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.recordcount();
  }

  static int Count(const std::string& text, const std::string& piece) {
    int count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
    return count;
  }

  std::unique_ptr<TestDatabase> base;
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminInitOnASystem, testing::ValuesIn(DriversUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminInitOnASystem, CreatesAllTablesOnceAndDoesNotChangeThemLater) {
  const Process first = Init();
  EXPECT_EQ(first.status, 0) << first.err;
  EXPECT_EQ(Count(first.out, ": created\n"), 19);
  Execute("insert into tsmdm030 (cstp) values ('A')");
  const Process again = Init();
  EXPECT_EQ(again.status, 0) << again.err;
  EXPECT_EQ(Count(again.out, ": exists\n"), 19);
  EXPECT_EQ(Found("select * from tsmdm030 where cstp = 'A'"), 1);
}

TEST_P(QmxAdminInitOnASystem, MakesAControlTableWhoseTableCodesIgnoreCase) {
  Init();
  Execute("insert into tstables (TableName, in_use) values ('tsmdm030', 1)");
  EXPECT_EQ(Found("select * from tstables where tablename = 'TSMDM030'"), 1);
  EXPECT_EQ(Found("select * from tstables where tablename = 'TSMDM030 '"), 0);
  EXPECT_EQ(Found("select * from tstables where tablename = 'tsmdm03'"), 0);
  EXPECT_EQ(Raised([&] { Execute("insert into tstables (TableName) values ('TsMdM030')"); }).Number(),
            errors::kIntegrity);
}

TEST_P(QmxAdminInitOnASystem, PrintsDifferencesAndChangesNothing) {
  Execute("create table tsmdm030 (cstp integer, dsca varchar(10), ract varchar(10))");
  const Process run = Init();
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_THAT(run.out, HasSubstr("tsmdm030: differs\n"
                                 "  the column cstp holds 32-bit integers, not texts\n"
                                 "  the column prod is missing\n"
                                 "  it has no key, not the key cstp\n"));
  EXPECT_EQ(Count(run.out, ": created\n"), 18);
  Execute("insert into tsmdm030 (cstp, dsca, ract) values (7, 'kept', 'W')");
  EXPECT_EQ(Found("select * from tsmdm030 where cstp = 7"), 1);
  EXPECT_EQ(Raised([&] { Found("select prod from tsmdm030"); }).Number(), errors::kCommand);
}

TEST_P(QmxAdminInitOnASystem, PrintsTheStatementsAndMakesNothing) {
  const Process print = Init({"--print"});
  EXPECT_EQ(print.status, 0) << print.err;
  EXPECT_EQ(Count(print.out, "create table "), 19);
  EXPECT_THAT(print.out, Not(HasSubstr(": created")));
  EXPECT_EQ(Count(Init().out, ": created\n"), 19);
}

}  // namespace
}  // namespace qmx::test
