#include "tools/qmxadmin/local_database.h"

#include "tests/support/raised.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"

namespace qmx::test {
namespace {

class ALocalDatabase : public AdminOnASystem {
 protected:
  ALocalDatabase() {
    Execute("insert into tsmdm030 (cstp, dsca) values ('A', 'one')");
    Execute("insert into tsmdm030 (cstp, dsca) values ('B', 'two')");
  }
};
INSTANTIATE_TEST_SUITE_P(Over, ALocalDatabase, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(ALocalDatabase, SelectsRowsWithTheFirstOneCurrent) {
  LocalDatabase local({ConnectionText(), ""}, Purpose::Write);
  const auto rows = local.Select(SqlText("select dsca from tsmdm030 where cstp = '").Value("B").Append("'"));
  EXPECT_EQ(rows->recordcount(), 1);
  EXPECT_EQ(rows->Fields("dsca").Value().ToText(), "two");
}

TEST_P(ALocalDatabase, SelectsOneNumber) {
  LocalDatabase local({ConnectionText(), "  "}, Purpose::Write);
  EXPECT_EQ(local.SelectNumber("select count(*) from tsmdm030"), 2);
  EXPECT_EQ(local.SelectNumber("select count(*) from tsmdm100"), 0);
}

TEST_P(ALocalDatabase, OpensASecondSessionOnTheSameRows) {
  LocalDatabase local({ConnectionText(), ""}, Purpose::Write);
  const auto session = local.OpenSession();
  EXPECT_EQ(session->System(), local.Connection().System());
  auto statement = session->Prepare("select dsca from tsmdm030 where cstp = ?");
  const Variant code = "A";
  statement->Bind(0, code);
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Value(0).ToText(), "one");
  EXPECT_FALSE(statement->Step());
  statement.reset();
  session->Close();
}

TEST_P(ALocalDatabase, RaisesWhatSelectingAnUnknownDatabaseRaises) {
  const Error error = Raised([&] { LocalDatabase({ConnectionText(), "no_such_base"}, Purpose::Read); });
  EXPECT_THAT(error.Description(), testing::HasSubstr("no_such_base"));
}

}  // namespace
}  // namespace qmx::test
