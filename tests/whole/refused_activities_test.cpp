// An order's activity that breaks a constraint which the server checks at the commit only, in the middle of a copy by
// change: the activities before it stay, the copy fails, and the next one brings the rest.
#include "tests/whole/server_copy.h"

namespace qmx::test::refused_activities {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr const char* kTable = "tssoc210";

class RefusedActivity : public CopyIntoAServer {
 protected:
  static constexpr std::size_t kBad = 37;  // its place in the ERP's order

  RefusedActivity() : CopyIntoAServer({{"orders", 60}}) {}

  // All are local; one of them has changed so that the server refuses it.
  void RefuseOne() {
    ControlRecord(kTable, kFullCopy);
    EXPECT_EQ(Program().Run(kTable).status, 0);
    Sql("create table allowed (cstn varchar(20) primary key)");
    Sql("insert into allowed values ('NEW')");
    Sql("insert into allowed select distinct cstn from tssoc210 where cstn is not null");
    Sql("alter table tssoc210 add foreign key (cstn) references allowed deferrable initially deferred");
    Sql("delete from tstables");
    ControlRecord(kTable, kOnlyChanged);
    company_.Change(DateTime::FromDate(2002, 1, 1), "update tssoc210 set cstn = 'NEW'");
    key_ = company_.Value("select orno || '=' || acln from tssoc210 order by orno, acln limit 1 offset " +
                          std::to_string(kBad));
    company_.Change(DateTime::FromDate(2002, 1, 2),
                    "update tssoc210 set cstn = 'BAD' where orno || '=' || acln = '" + key_ + "'");
  }

  std::vector<std::string> Activities(const std::string& condition) {
    return Column("select concat(orno, '=', acln) from tssoc210 where " + condition + " order by orno, acln");
  }

  std::string key_;
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RefusedActivity);
// The other server checks every constraint at the statement.
INSTANTIATE_TEST_SUITE_P(Over, RefusedActivity,
                         testing::ValuesIn(DriversUnderTest([](const auto& one) { return one.name == "PostgreSQL"; })),
                         ServerName);

TEST_P(RefusedActivity, AtTheCommitFailsTheCopyAndKeepsTheActivitiesBeforeIt) {
  RefuseOne();
  const std::vector<std::string> all = Activities("1 = 1");
  ASSERT_GT(all.size(), kBad + 10);
  ASSERT_EQ(all[kBad], key_);

  const CopyProcesses program = Program();
  const Process ended = program.Run(kTable);
  ExpectFailure(program, ended, kTable);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("SQLSTATE 23503"), HasSubstr("table: tssoc210"), HasSubstr("key: ")));
  EXPECT_EQ(Activities("cstn = 'NEW'"), std::vector(all.begin(), all.begin() + kBad));
  EXPECT_EQ(Activities("1 = 1"), all);

  Sql("insert into allowed values ('BAD')");
  const Process next = Program().Run(kTable);
  EXPECT_EQ(next.status, 0) << next.err;
  EXPECT_EQ(Activities("cstn = 'BAD'"), std::vector{key_});
  EXPECT_EQ(Activities("cstn = 'NEW'").size(), all.size() - 1);
  EXPECT_EQ(InUse(), "0");
  EXPECT_NE(Lutm(), kLutm);
}

}  // namespace
}  // namespace qmx::test::refused_activities
