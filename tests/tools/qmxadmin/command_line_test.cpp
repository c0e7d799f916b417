#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(QmxAdmin, ShowsItsCommandsAndExitStatusesWhenAskedForHelp) {
  const Process help = test::Run(QMX_ADMIN, {"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, AllOf(HasSubstr("init"), HasSubstr("Exit status: 0"), HasSubstr("1 something"),
                              HasSubstr("2 the command failed")));
  EXPECT_THAT(help.err, IsEmpty());
}

TEST(QmxAdmin, ShowsTheArgumentsOfACommand) {
  const Process help = test::Run(QMX_ADMIN, {"init", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, AllOf(HasSubstr("CONNECTION"), HasSubstr("DATABASE"), HasSubstr("--print"),
                              HasSubstr("Provider=SQLite;Data Source=FILE")));
}

TEST(QmxAdmin, ShowsItsVersion) {
  const Process version = test::Run(QMX_ADMIN, {"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_THAT(version.out, StartsWith("qmxadmin "));
}

TEST(QmxAdmin, WrongArgumentsAreExplainedAndEndWithStatusTwo) {
  const Process none = test::Run(QMX_ADMIN, {});
  EXPECT_EQ(none.status, 2);
  EXPECT_THAT(none.err, AllOf(HasSubstr("subcommand is required"), HasSubstr("--help")));
  const Process missing = test::Run(QMX_ADMIN, {"init"});
  EXPECT_EQ(missing.status, 2);
  EXPECT_THAT(missing.err, HasSubstr("CONNECTION is required"));
  const Process unknown = test::Run(QMX_ADMIN, {"destroy"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_THAT(unknown.out, IsEmpty());
}

TEST(QmxAdmin, AnOutputThatCannotBeWrittenIsAFailure) {
  const Process full =
      test::Run("/bin/sh", {"-c", std::string("exec \"$0\" init --print Provider=SQLite \"\" > /dev/full"), QMX_ADMIN});
  EXPECT_EQ(full.status, 2);
  EXPECT_THAT(full.err, HasSubstr("Standard output cannot be written"));
}

}  // namespace
}  // namespace qmx::test
