#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(QmxAdmin, ShowsItsCommandsAndExitStatusesWhenAskedForHelp) {
  const Process help = test::Run(QMX_ADMIN, {"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, AllOf(HasSubstr("init"), HasSubstr("Exit status: 0"), HasSubstr("1 a problem was found"),
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

TEST(QmxAdmin, SaysThatConnectionAndDatabaseMayComeFromTheEnvironment) {
  for (const char* command : {"init", "expand", "check", "status", "method", "release"}) {
    EXPECT_THAT(test::Run(QMX_ADMIN, {command, "--help"}).out,
                AllOf(HasSubstr("QMX_CONNECTION"), HasSubstr("QMX_DATABASE")));
  }
}

TEST(QmxAdmin, TakesConnectionAndDatabaseFromTheEnvironment) {
  const TempFolder folder;
  const Process made = test::Run(
      QMX_ADMIN, {"init"},
      {{"QMX_CONNECTION", "Provider=SQLite;Data Source=" + folder.Path().string()}, {"QMX_DATABASE", "service"}});
  EXPECT_EQ(made.status, 0) << made.err;
  EXPECT_TRUE(std::filesystem::exists(folder / "service.db"));
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

TEST(QmxAdmin, NeverShowsAPasswordOfWrongArguments) {
  const std::vector<std::vector<std::string>> wrong = {
      {"init", "", "", "DSN=local;PWD=geheim"},
      {"init", "DSN=local;PWD=very", "geheim", "also geheim"},
      {"init", "--conection=DSN=local;PWD=geheim", "", ""},
      {"DSN=local;PWD=geheim", "init"},
      {"init", "DSN=local;PWD=geheim"},
  };
  for (const std::vector<std::string>& arguments : wrong) {
    const Process run = test::Run(QMX_ADMIN, arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err + run.out, Not(HasSubstr("geheim")));
    EXPECT_THAT(run.err, HasSubstr("--help"));
  }
}

TEST(QmxAdmin, NeverShowsAPasswordInTheWrongPlace) {
  const std::vector<std::vector<std::string>> wrong = {
      {"method", "tsmdm030", "full", "DSN=local;PWD=geheim"},
      {"method", "tsmdm030", "DSN=local;PWD=geheim", "full"},
      {"method", "", "", "DSN=local;PWD=geheim", "full"},
      {"release", "tsmdm030", "DSN=local;PWD=geheim", ""},
      {"status", "", "DSN=local;PWD=geheim"},
  };
  for (const std::vector<std::string>& arguments : wrong) {
    const Process run = test::Run(QMX_ADMIN, arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, AllOf(Not(IsEmpty()), Not(HasSubstr("geheim"))));
  }
}

TEST(QmxAdmin, NamesAnOptionThatIsNotThere) {
  EXPECT_THAT(test::Run(QMX_ADMIN, {"init", "--conection=DSN=x", "", ""}).err, HasSubstr("no option --conection."));
}

TEST(QmxAdmin, DoesNothingWhenAnArgumentIsTooMany) {
  const TempFolder folder;
  const Process run =
      test::Run(QMX_ADMIN, {"init", "Provider=SQLite;Data Source=" + folder / "local.db", "", "tsmdm030"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("one argument too many"));
  EXPECT_FALSE(std::filesystem::exists(folder / "local.db"));
}

TEST(QmxAdmin, AnOutputThatCannotBeWrittenIsAFailure) {
  const std::string onAFullDisk = "exec \"$0\" init --print Provider=SQLite \"\" > /dev/full";
  const Process run = test::Run("/bin/sh", {"-c", onAFullDisk, QMX_ADMIN});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("Standard output cannot be written"));
}

TEST(QmxAdmin, EndsQuietlyWhenItsReaderHasSeenEnough) {
  const TempFolder folder;
  // A reader opens the pipe and closes it again.
  const std::string intoABrokenPipe =
      "mkfifo \"$1\"; exec 3<>\"$1\" 4>\"$1\" 3>&-; exec \"$0\" init --print Provider=SQLite \"\" >&4";
  const Process run = test::Run("/bin/sh", {"-c", intoABrokenPipe, QMX_ADMIN, folder / "pipe"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
}

TEST(QmxAdmin, SuggestsTheCommandThatIsNearest) {
  for (const auto& [wrong, right] : std::map<std::string, std::string>{
           {"stauts", "status"}, {"verfy", "verify"}, {"relese", "release"}, {"calender", "calendar"}}) {
    const Process run = test::Run(QMX_ADMIN, {wrong, "--json"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(run.err,
              "There is no such command. Did you mean \"" + right + "\"?\nRun with --help for more information.\n");
  }
  EXPECT_THAT(test::Run(QMX_ADMIN, {"destroy"}).err,
              StartsWith("There is no such command. The commands are calendar, check, components, copy, "));
}

}  // namespace
}  // namespace qmx::test
