// Path texts and native paths.
#include "platform/system/paths.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "tests/support/environment.h"

namespace qmx::test {
namespace {

TEST(NativePath, TurnsBackslashesIntoSlashes) {
  EXPECT_EQ(NativePath("\\var\\log\\qmx/copy\\tsmdm030.log"), "/var/log/qmx/copy/tsmdm030.log");
  EXPECT_EQ(NativePath("logs\\x"), "logs/x");
  EXPECT_EQ(NativePath("\\evtlog.txt"), "/evtlog.txt");
  EXPECT_EQ(NativePath(""), "");
}

TEST(NativePath, TakesTheDrivePrefixAsTheNamedFolder) {
  const EnvironmentVariable drive("QMX_SYSTEM_DRIVE", "/srv/drive");
  EXPECT_EQ(NativePath("C:\\QMXDBSynclog.txt"), "/srv/drive/QMXDBSynclog.txt");
  EXPECT_EQ(NativePath("c:/a\\b"), "/srv/drive/a/b");
  EXPECT_EQ(NativePath("C:a.txt"), "/srv/drive/a.txt");
  EXPECT_EQ(NativePath("C:"), "/srv/drive/");
}

TEST(NativePath, TakesTheDrivePrefixAsTheHomeFolderIfNoFolderIsNamed) {
  const EnvironmentVariable home("HOME", "/home/dispatcher");
  const EnvironmentVariable unset("QMX_SYSTEM_DRIVE", nullptr);
  EXPECT_EQ(NativePath("C:\\x.txt"), "/home/dispatcher/x.txt");
  const EnvironmentVariable blank("QMX_SYSTEM_DRIVE", "");
  EXPECT_EQ(NativePath("C:\\x.txt"), "/home/dispatcher/x.txt");
}

TEST(NativePath, AsksTheUserDatabaseForTheHomeFolderIfTheEnvironmentHasNone) {
  const EnvironmentVariable drive("QMX_SYSTEM_DRIVE", nullptr);
  const EnvironmentVariable home("HOME", nullptr);
  const passwd* user = getpwuid(getuid());
  ASSERT_NE(user, nullptr);
  EXPECT_EQ(NativePath("C:\\x.txt"), std::string(user->pw_dir) + "/x.txt");
}

TEST(NativePath, DoesNotDoubleTheSlashOfARootDrive) {
  const EnvironmentVariable drive("QMX_SYSTEM_DRIVE", "/");
  EXPECT_EQ(NativePath("C:\\x.txt"), "/x.txt");
}

TEST(NativePath, KnowsNoOtherDrive) { EXPECT_EQ(NativePath("D:\\logs\\x.txt"), "D:/logs/x.txt"); }

TEST(PathText, IsWrittenWithBackslashes) { EXPECT_EQ(PathText("/var/log/qmx"), "\\var\\log\\qmx"); }

}  // namespace
}  // namespace qmx::test
