#include "tests/tools/qmxadmin/admin_on_a_system.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class QmxAdminMethod : public AdminOnASystem {
 protected:
  std::string Record(const std::string& table) {
    std::string text;
    for (const char* column : {"in_use", "freq", "reqd", "syme", "lutm"}) {
      for (const std::string& value :
           Column("select " + std::string(column) + " from tstables where tablename = '" + table + "'")) {
        text += (text.empty() ? "" : " | ") + value;
      }
    }
    return text;
  }
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminMethod, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

// What does not depend on the system.
class QmxAdminMethodOnSqlite : public QmxAdminMethod {};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminMethodOnSqlite, testing::ValuesIn(OnlySqlite()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminMethod, SetsTheMethodAndNothingElse) {
  Execute(
      "insert into tstables (tablename, in_use, freq, reqd, syme, lutm) values "
      "('tsmdm030', 1, 3, 4, 1, '2026-11-20 23:59:58'), ('tsmdm100', 0, 3, 4, 2, '2026-11-20 23:59:58')");
  const Process run = Admin({"method", "tsmdm030", "tsmdm100", "changed"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            "tsmdm030: changed, was full; the copy in progress keeps its method\n"
            "tsmdm100: changed, as before\n");
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_EQ(Record("tsmdm030"), "1 | 3 | 4 | 2 | 2026-11-20 23:59:58");
  EXPECT_EQ(Record("tsmdm100"), "0 | 3 | 4 | 2 | 2026-11-20 23:59:58");

  EXPECT_EQ(Admin({"method", "tsmdm100", "full"}).out, "tsmdm100: full, was changed\n");
  EXPECT_EQ(Record("tsmdm030"), "1 | 3 | 4 | 2 | 2026-11-20 23:59:58");
  EXPECT_EQ(Record("tsmdm100"), "0 | 3 | 4 | 1 | 2026-11-20 23:59:58");
}

TEST_P(QmxAdminMethod, MakesTheControlRecordThatACopyWouldMake) {
  EXPECT_EQ(Admin({"method", "tsmdm030", "full"}).out, "tsmdm030: full, as before\n");
  EXPECT_EQ(Record("tsmdm030"), "0 | 0 | 1 | 1 | NULL");
}

TEST_P(QmxAdminMethodOnSqlite, SaysWhatACopyByChangeDoesWithoutALastUpdateTime) {
  Execute("insert into tstables (tablename, in_use, syme, lutm) values ('tsmdm030', 0, 1, null)");
  const Process run = Admin({"method", "tsmdm030", "tsmdm100", "changed"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "tsmdm030: changed, was full\ntsmdm100: changed, was full\n");
  EXPECT_THAT(run.err, AllOf(StartsWith("tsmdm030 has no last update time"), HasSubstr("since 1970-01-01"),
                             HasSubstr("\ntsmdm100 has no last update time"), HasSubstr("Copy it in full first.")));
}

TEST_P(QmxAdminMethodOnSqlite, ChangesNothingIfATableIsUnknown) {
  const Process run = Admin({"method", "tsmdm030", "tsmdm031", "TSMDM100", "changed"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.out, IsEmpty());
  EXPECT_THAT(run.err,
              AllOf(HasSubstr("no table \"tsmdm031\""),
                    HasSubstr("The tables are tcccp001, tcccp030, tccom130, tscfg200, tscfg220, tsclm020, tsclm024, "
                              "tsmdm030, tsmdm100, tsmdm105, tsmdm130, tsmdm135, tsmdm140, tssoc200, tssoc205, "
                              "tssoc210, tsspc200.")));
  EXPECT_THAT(Column("select tablename from tstables"), IsEmpty());
}

TEST_P(QmxAdminMethodOnSqlite, NeedsAMethodAfterTheTables) {
  const std::string noMethod = "The last argument must be \"full\" or \"changed\".";
  const std::pair<std::vector<std::string>, std::string> refused[] = {
      {{"method", "tsmdm030"}, noMethod},
      {{"method", "full"}, "Name the tables or give --all."},
      {{"method", "full", "tsmdm030"}, noMethod}};
  for (const auto& [arguments, message] : refused) {
    const Process run = Admin(arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.err, HasSubstr(message)) << testing::PrintToString(arguments);
  }
  EXPECT_THAT(Column("select tablename from tstables"), IsEmpty());
}

TEST_P(QmxAdminMethodOnSqlite, ChangesEveryTableEvenIfItCannotPrint) {
  const Process run =
      test::Run("/bin/sh", {"-c", "exec \"$0\" method tsmdm030 tsmdm100 changed > /dev/full 2> /dev/full", QMX_ADMIN},
                Environment());
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(Column("select tablename from tstables where syme = 2 order by tablename"),
              ElementsAre("tsmdm030", "tsmdm100"));
}

TEST_P(QmxAdminMethodOnSqlite, FailsIfThereIsNoControlTable) {
  Execute("drop table tstables");
  const Process run = Admin({"method", "tsmdm030", "full"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, AllOf(HasSubstr("-2147217865"), HasSubstr("tstables")));
}

TEST_P(QmxAdminMethodOnSqlite, SetsTheMethodOfAllTables) {
  Execute("insert into tstables (tablename, in_use, syme, lutm) values ('tsmdm030', 0, 1, '2026-11-20 23:59:58')");
  EXPECT_EQ(Admin({"method", "--all", "changed", "--quiet"}).status, 0);
  EXPECT_THAT(Column("select count(*) from tstables where syme = 2"), ElementsAre("17"));
  EXPECT_EQ(Admin({"method", "tsmdm030", "--all", "full"}).status, 0);
  EXPECT_THAT(Column("select count(*) from tstables where syme = 1"), ElementsAre("17"));
}

TEST_P(QmxAdminMethodOnSqlite, PrintsTheSameAsJson) {
  Execute("insert into tstables (tablename, in_use, syme, lutm) values ('tsmdm030', 1, 2, '2026-11-20 23:59:58')");
  EXPECT_EQ(Admin({"method", "tsmdm030", "tsmdm100", "full", "--json"}).out,
            "[\n"
            "  {\"table\":\"tsmdm030\",\"method\":\"full\",\"was\":\"changed\",\"in_progress\":true},\n"
            "  {\"table\":\"tsmdm100\",\"method\":\"full\",\"was\":\"full\",\"in_progress\":false}\n"
            "]\n");
}

TEST_P(QmxAdminMethodOnSqlite, PrintsWarningsOnlyIfItIsQuiet) {
  Execute("insert into tstables (tablename, in_use, syme, lutm) values ('tsmdm030', 0, 1, '2026-11-20 23:59:58')");
  const Process run = Admin({"method", "tsmdm030", "tsmdm100", "changed", "--quiet"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, StartsWith("tsmdm100 has no last update time."));
}

}  // namespace
}  // namespace qmx::test
