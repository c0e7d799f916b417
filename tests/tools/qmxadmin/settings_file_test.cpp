#include "tools/qmxadmin/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/support/environment.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "(not set)";
}

class ASettingsFile : public testing::Test {
 protected:
  SettingsFile Written(const std::string& text) {
    WriteFile(folder_ / "settings", text);
    return SettingsFile(folder_ / "settings");
  }
  void Apply(const std::string& text) { Written(text).ApplyToEnvironment(); }

  TempFolder folder_;
  EnvironmentVariable connection_{"QMX_CONNECTION", nullptr};
  EnvironmentVariable database_{"QMX_DATABASE", nullptr};
  EnvironmentVariable logs_{"QMX_LOGS", nullptr};
  EnvironmentVariable component_{"QMX_COMPONENT", nullptr};
};

TEST_F(ASettingsFile, SetsTheVariablesThatAreNotSet) {
  const EnvironmentVariable component("QMX_COMPONENT", "A, b");
  Apply("QMX_LOGS=/var/log/qmx\nQMX_COMPONENT=\"C, d\"\n");
  EXPECT_EQ(Variable("QMX_LOGS"), "/var/log/qmx");
  EXPECT_EQ(Variable("QMX_COMPONENT"), "A, b");
}

TEST_F(ASettingsFile, DoesNotReplaceAnEmptyVariable) {
  const EnvironmentVariable logs("QMX_LOGS", "");
  Apply("QMX_LOGS=/var/log/qmx\n");
  EXPECT_EQ(Variable("QMX_LOGS"), "");
}

TEST_F(ASettingsFile, NeverMixesItsDatabaseWithTheEnvironmentsConnection) {
  const EnvironmentVariable connection("QMX_CONNECTION", "DSN=test");
  Apply("QMX_CONNECTION=DSN=production\nQMX_DATABASE=service\n");
  EXPECT_EQ(Variable("QMX_CONNECTION"), "DSN=test");
  EXPECT_EQ(Variable("QMX_DATABASE"), "(not set)");
}

TEST_F(ASettingsFile, HasQuotesCommentsAndBlanksAsAShellAndSystemdReadThem) {
  Apply(
      "# a comment\n\n; another one\n"
      "  QMX_CONNECTION = no setting\n"
      "QMX_CONNECTION=\"Provider=SQLite;Data Source=/a b/\\\"c\\\"\\\\d\"\r\n"
      "QMX_DATABASE=''\n"
      "QMX_LOGS='/it \\is'  \n"
      "QMX_COMPONENT=first\n"
      "QMX_COMPONENT=Orvan, last \n");
  EXPECT_EQ(Variable("QMX_CONNECTION"), "Provider=SQLite;Data Source=/a b/\"c\"\\d");
  EXPECT_EQ(Variable("QMX_DATABASE"), "");
  EXPECT_EQ(Variable("QMX_LOGS"), "/it \\is");
  EXPECT_EQ(Variable("QMX_COMPONENT"), "Orvan, last");
}

TEST_F(ASettingsFile, NamesTheLinesThatAreNoSettingsAndNoValue) {
  const SettingsFile file =
      Written("QMX_LOGS=/var/log\nexport QMX_COMPONENT=geheim\nQMX_DATABASE=\"geheim\n\nQMX_X=\"a\" geheim\n=geheim\n");
  const std::string path = folder_ / "settings";
  EXPECT_THAT(file.Problems(), ElementsAre(path + ", line 2: NAME=VALUE is expected. The line is ignored.",
                                           path + ", line 3: NAME=VALUE is expected. The line is ignored.",
                                           path + ", line 5: NAME=VALUE is expected. The line is ignored.",
                                           path + ", line 6: NAME=VALUE is expected. The line is ignored."));
  file.ApplyToEnvironment();
  EXPECT_EQ(Variable("QMX_LOGS"), "/var/log");
}

TEST_F(ASettingsFile, MayBeginWithAByteOrderMark) {
  const SettingsFile file = Written("\xEF\xBB\xBFQMX_LOGS=/var/log\n");
  EXPECT_THAT(file.Problems(), IsEmpty());
  file.ApplyToEnvironment();
  EXPECT_EQ(Variable("QMX_LOGS"), "/var/log");
}

TEST_F(ASettingsFile, InUtf16IsNotRead) {
  const SettingsFile file = Written(std::string("\xFF\xFEQ\0=\0\n\0", 8));
  EXPECT_THAT(file.Problems(), ElementsAre((folder_ / "settings") + ", line 1: the text is UTF-16. Save it as UTF-8."));
}

TEST_F(ASettingsFile, MayBeMissing) {
  for (const std::string& path : {folder_ / "none", std::string()}) {
    const SettingsFile file(path);
    file.ApplyToEnvironment();
    EXPECT_THAT(file.Problems(), IsEmpty());
    EXPECT_THAT(file.Unreadable(), IsEmpty());
  }
  EXPECT_EQ(Variable("QMX_LOGS"), "(not set)");
}

TEST_F(ASettingsFile, SaysWhyItCannotBeRead) {
  WriteFile(folder_ / "file", "");
  const SettingsFile file(folder_ / "file/settings");
  EXPECT_EQ(file.Unreadable(), (folder_ / "file/settings") + " cannot be read: Not a directory.");
}

TEST_F(ASettingsFile, IsTheOneThatTheEnvironmentNamesOrTheInstalledOne) {
  const EnvironmentVariable named("QMX_SETTINGS", "/srv/qmx");
  EXPECT_EQ(SettingsFile::FromEnvironment().Path(), "/srv/qmx");
  const EnvironmentVariable unset("QMX_SETTINGS", nullptr);
  EXPECT_EQ(SettingsFile::FromEnvironment().Path(), "/etc/default/qmxdatacopy");
}

}  // namespace
}  // namespace qmx::test
