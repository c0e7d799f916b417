#include "tools/qmxadmin/environment_arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/environment.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(EnvironmentArguments, PutConnectionAndDatabaseAfterTheCommand) {
  const EnvironmentVariable connection("QMX_CONNECTION", "DSN=local;PWD=rose");
  const EnvironmentVariable database("QMX_DATABASE", "service");
  EXPECT_THAT(WithEnvironment({"status"}), ElementsAre("status", "DSN=local;PWD=rose", "service"));
  EXPECT_THAT(WithEnvironment({"method", "tsmdm030", "tcccp030=E00001=E", "full"}),
              ElementsAre("method", "DSN=local;PWD=rose", "service", "tsmdm030", "tcccp030=E00001=E", "full"));
  EXPECT_THAT(WithEnvironment({"status", "--json"}), ElementsAre("status", "DSN=local;PWD=rose", "service", "--json"));
}

TEST(EnvironmentArguments, KeepTheConnectionsOwnDatabaseIfNoneIsNamed) {
  const EnvironmentVariable connection("QMX_CONNECTION", "DSN=local");
  const EnvironmentVariable database("QMX_DATABASE", nullptr);
  EXPECT_THAT(WithEnvironment({"status"}), ElementsAre("status", "DSN=local", ""));
}

TEST(EnvironmentArguments, GiveWayToTheCommandLine) {
  const EnvironmentVariable connection("QMX_CONNECTION", "DSN=local");
  const EnvironmentVariable database("QMX_DATABASE", "service");
  EXPECT_THAT(WithEnvironment({"status", "Data Source=x;Provider=SQLite", ""}),
              ElementsAre("status", "Data Source=x;Provider=SQLite", ""));
  EXPECT_THAT(WithEnvironment({"status", "--json", "FILEDSN=x", ""}), ElementsAre("status", "--json", "FILEDSN=x", ""));
}

TEST(EnvironmentArguments, DoNothingIfNoConnectionIsSet) {
  const EnvironmentVariable database("QMX_DATABASE", "service");
  for (const char* none : {static_cast<const char*>(nullptr), ""}) {
    const EnvironmentVariable connection("QMX_CONNECTION", none);
    EXPECT_THAT(WithEnvironment({"status"}), ElementsAre("status"));
    EXPECT_THAT(WithEnvironment({}), IsEmpty());
  }
}

}  // namespace
}  // namespace qmx::test
