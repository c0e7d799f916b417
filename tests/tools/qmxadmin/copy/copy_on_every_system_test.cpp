#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

using testing::MatchesRegex;

using QmxAdminCopyOnASystem = CopyingOnASystem;
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminCopyOnASystem, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminCopyOnASystem, CopiesTablesSeveralAtATimeAndSumsUp) {
  Sql("insert into tstables (TableName, syme) values ('tsmdm140', 2)");
  Sql("update tstables set syme = 1");
  const Process run = Copy({"tcccp030", "tsmdm030", "tsmdm140", "--jobs", "3"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out,
              MatchesRegex("TABLE     DESCRIPTION        METHOD  RESULT  ADDED  UPDATED  REMOVED +MS  STATUS\n"
                           "tcccp030  Calendars          full    copied +[0-9]+        0        0 +[0-9.]+       0\n"
                           "tsmdm030  Service Types      full    copied      3        0        0 +[0-9.]+       0\n"
                           "tsmdm140  Service Employees  full    copied     30        0        0 +[0-9.]+       0\n"));
  EXPECT_LT(Place(run.err, "tsmdm140: copied, 30 added, 0 updated, 0 removed\n"),
            Place(run.err, "tcccp030: started\n"));
  EXPECT_LT(Place(run.err, "tsmdm140: started\n"), Place(run.err, "tsmdm030: copied"));
}

}  // namespace
}  // namespace qmx::test
