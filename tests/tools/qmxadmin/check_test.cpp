#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/sqlite/driver.h"
#include "tests/support/temp_folder.h"
#include "tests/support/terminal_process.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"
#include "tests/tools/qmxadmin/sandbox_erp.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// Lines that begin with the text.
std::size_t Lines(const std::string& text, const std::string& beginning) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1)
    count += text.compare(at, beginning.size(), beginning) == 0;
  return count;
}

class QmxAdminCheck : public AdminOnASystem {
 protected:
  QmxAdminCheck() { std::filesystem::create_directory(Logs()); }

  std::string Logs() const { return folder_ / "log"; }

  Process Check(std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"check", ConnectionText(), ""});
    return test::Run(QMX_ADMIN, more, {{"QMX_COMPONENTS", components_}});
  }
  Process CheckAll(const std::string& erp = SandboxErpFile()) {
    return Check({"--logs", Logs(), "--component", "OrvanSandbox, " + erp});
  }

  TempFolder folder_;
  std::string components_ = SANDBOX_COMPONENTS;
};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminCheck, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

// What does not depend on the system.
class QmxAdminCheckOnSqlite : public QmxAdminCheck {};
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminCheckOnSqlite, testing::ValuesIn(OnlySqlite()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminCheck, FindsNothingWrongWhereEverythingIsThere) {
  const Process run = CheckAll();
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_EQ(Lines(run.out, "ok           "), 47U) << run.out;
  EXPECT_EQ(Lines(run.out, ""), 47U) << run.out;
  EXPECT_THAT(run.out, StartsWith("ok           connection: " + GetParam().name + "\nok           default database: "));
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("\nok           table tsmdm030: 4 columns, as they should be\n"),
                    HasSubstr("\nok           table tscalender: 3 columns, as they should be\n"),
                    HasSubstr("\nok           log folder: " + Logs() + " can be written\n"),
                    HasSubstr("\nok           tsmdm030, ServiceTypes.ServiceTypesManager: answers, and has records\n"),
                    HasSubstr("\nok           tcccp030, Calendars.CalendarManager: answers, and has no record\n"),
                    HasSubstr("\nok           audit.AuditReader: can be made\n"),
                    HasSubstr("\nok           QMXServer20.ClientRequests: can be made\n")));
  EXPECT_TRUE(std::filesystem::is_empty(Logs()));
}

TEST_P(QmxAdminCheckOnSqlite, SaysWhatWasNotLookedAt) {
  const Process run = Check();
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nnot checked  log folder: --logs is not given\n"),
                             HasSubstr("\nok           tsmdm030, ServiceTypes.ServiceTypesManager: can be made\n"),
                             HasSubstr("\nnot checked  ERP: no manager was asked, since --component is not given\n")));
}

TEST_P(QmxAdminCheck, RemarksThatAnOlderControlTableTellsCapitalsFromSmallLetters) {
  EXPECT_THAT(Check().out,
              HasSubstr("\nok           table tstables: 6 columns, as they should be; it tells capitals from "
                        "small letters, so a copy of TSMDM030 does not see the flag of tsmdm030\n"));
  Execute("drop table tstables");
  EXPECT_EQ(Admin({"init"}).status, 0);
  EXPECT_THAT(Check().out, HasSubstr("\nok           table tstables: 6 columns, as they should be\n"));
}

TEST_P(QmxAdminCheck, TellsEachColumnThatDiffersAndEachTableThatIsMissing) {
  Execute("drop table tsmdm030");
  Execute("create table tsmdm030 (cstp integer, dsca varchar(10), ract varchar(10))");
  Execute("drop table tstables");
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\nwrong        table tsmdm030: the column cstp holds 32-bit integers, not texts. "
                                 "\"qmxadmin init --print\" shows how it should be.\n"
                                 "wrong        table tsmdm030: the column prod is missing. "
                                 "\"qmxadmin init --print\" shows how it should be.\n"
                                 "wrong        table tsmdm030: it has no key, not the key cstp. "
                                 "\"qmxadmin init --print\" shows how it should be.\n"
                                 "ok           table tsmdm100"));
  EXPECT_THAT(run.out, HasSubstr("\nwrong        table tstables: it is missing. \"qmxadmin init\" makes it.\n"));
  EXPECT_EQ(Lines(run.out, "wrong"), 4U);
}

TEST_P(QmxAdminCheckOnSqlite, TellsTheSameAsJson) {
  Execute("drop table tstables");
  const Process run = Check({"--json"});
  EXPECT_EQ(run.status, 1);
  const auto findings = nlohmann::json::parse(run.out);
  EXPECT_EQ(findings[0], nlohmann::json::parse(R"({"check": "connection", "state": "ok", "told": ")" + GetParam().name +
                                               R"(", "what_to_do": null})"));
  EXPECT_EQ(findings[19], nlohmann::json::parse(R"({"check": "table tstables", "state": "wrong",
      "told": "it is missing", "what_to_do": "\"qmxadmin init\" makes it."})"));
}

TEST_P(QmxAdminCheck, GoesOnWithoutADatabase) {
  const std::string nobody =
      GetParam().name == "SQLite" ? ConnectionText() + "/nowhere" : ConnectionText() + ";UID=nobody";
  const Process run = test::Run(QMX_ADMIN, {"check", nobody, "", "--logs", Logs()}, {{"QMX_COMPONENTS", components_}});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(StartsWith("wrong        connection: error -214"), HasSubstr(" Correct CONNECTION.\n"),
                    HasSubstr("\nok           log folder: "), Not(HasSubstr("rose")), Not(HasSubstr("table "))));
}

TEST_P(QmxAdminCheck, NamesADatabaseThatIsNotThere) {
  const Process run =
      test::Run(QMX_ADMIN, {"check", ConnectionText(), "no_such_base"}, {{"QMX_COMPONENTS", components_}});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nwrong        default database: error -214"), HasSubstr("no_such_base"),
                             HasSubstr(" Correct DATABASE.\n"), Not(HasSubstr("table "))));
}

TEST_P(QmxAdminCheckOnSqlite, TellsThatTheLogFolderIsMissingOrAFile) {
  WriteFile(folder_ / "file", "");
  for (const std::string& folder : {folder_ / "none", folder_ / "file"}) {
    const Process run = Check({"--logs", folder});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("\nwrong        log folder: there is no folder " + folder +
                                   ". Make it, or name another one.\n"));
  }
}

TEST_P(QmxAdminCheckOnSqlite, TellsThatTheLogFolderCannotBeWritten) {
  const Process run = Check({"--logs", "/proc/self"});  // nobody makes files there, not even root
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nwrong        log folder: no file can be made in /proc/self: "),
                             HasSubstr("Let the user")));
}

TEST_P(QmxAdminCheckOnSqlite, ReadsTheLogFolderAsTheCopiesDo) {
  const Process run = test::Run(QMX_ADMIN, {"check", ConnectionText(), "", "--logs", "C:\\log"},
                                {{"QMX_COMPONENTS", components_}, {"QMX_SYSTEM_DRIVE", folder_.Path()}});
  EXPECT_THAT(run.out, HasSubstr("\nok           log folder: " + Logs() + " can be written\n"));
}

TEST_P(QmxAdminCheckOnSqlite, TellsALogThatCannotBeWritten) {
  std::filesystem::create_directory(Logs() + "/tsmdm030.log");
  WriteFile(Logs() + "/tsmdm100.log", "kept");
  const Process run = Check({"--logs", Logs()});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nok           log folder: "),
                             HasSubstr("\nwrong        log tsmdm030.log: it cannot be written: Is a directory. ")));
  EXPECT_EQ(Lines(run.out, "wrong"), 1U);
  EXPECT_EQ(ReadFile(Logs() + "/tsmdm100.log"), "kept");
}

TEST_P(QmxAdminCheckOnSqlite, ANamedPipeInPlaceOfALogIsWrongAndNothingWaits) {
  ASSERT_EQ(mkfifo((Logs() + "/tsmdm100.log").c_str(), 0600), 0);
  const Process run = Check({"--logs", Logs()});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\nwrong        log tsmdm100.log: it is a named pipe, not a regular file. "));
}

TEST_P(QmxAdminCheckOnSqlite, TellsManagersThatDoNotAnswer) {
  const Process run = CheckAll(folder_ / "none.db");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 17U) << run.out;
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: error "),
                             HasSubstr("none.db"), HasSubstr("The ERP's bridge says so")));
}

TEST_P(QmxAdminCheckOnSqlite, TellsTheOneManagerThatDoesNotAnswer) {
  std::filesystem::copy_file(SandboxErpFile(), folder_ / "orvan.db");
  SqliteDriver driver;
  Connection erp({&driver}, nullptr);
  erp.Open("Provider=SQLite;Data Source=" + folder_ / "orvan.db", "", "");
  erp.Execute("drop table tsmdm030");
  erp.Close();
  const Process run = CheckAll(folder_ / "orvan.db");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 1U) << run.out;
  EXPECT_THAT(run.out, HasSubstr("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: error "));
}

TEST_P(QmxAdminCheckOnSqlite, TellsComponentsThatAreNotRegistered) {
  components_ = folder_.Path();
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 22U) << run.out;  // the tables and the audit classes; dates are built in
  EXPECT_THAT(
      run.out,
      AllOf(HasSubstr("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: ServiceTypes.ServiceTypesManager is "
                      "not registered. \"qmxadmin components\" shows the manifests that are read; one must name it.\n"),
            HasSubstr("\nwrong        audit.period: audit.period is not registered. "),
            HasSubstr("\nok           java:java.util.Date: can be made\n"),
            HasSubstr("\nnot checked  QMXServer20.clsMessHandler: it is not registered")));
}

TEST_P(QmxAdminCheckOnSqlite, TellsARecordClassThatIsNotRegistered) {
  std::string manifest = ReadFile(components_ + "/orvan_sandbox.component");
  manifest.replace(manifest.find("progid = Skills.Skills\n"), 23, "");
  manifest.replace(manifest.find("orvan_sandbox.so"), 16, components_ + "/orvan_sandbox.so");
  WriteFile(folder_ / "orvan.component", manifest);
  components_ = folder_.Path();
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 1U) << run.out;
  EXPECT_THAT(run.out, HasSubstr("\nwrong        tsmdm130, Skills.SkillsManager: Skills.Skills is not registered. "));
}

TEST_P(QmxAdminCheckOnSqlite, TellsAServerThatDoesNotLoad) {
  // The library is not beside this one.
  WriteFile(folder_ / "orvan.component", ReadFile(components_ + "/orvan_sandbox.component"));
  components_ = folder_.Path();
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 22U) << run.out;
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: error 429, "),
                             HasSubstr("orvan_sandbox.so: cannot open shared object file"),
                             HasSubstr("shows which libraries load")));
}

TEST_P(QmxAdminCheckOnSqlite, TellsAManifestThatCannotBeRead) {
  WriteFile(folder_ / "broken.component", "library = a.so\nprogid Test.Probe\n");
  components_ += ":" + folder_.Path().string();
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\nwrong        components: " + (folder_ / "broken.component") + ", line 2: "));
}

TEST_P(QmxAdminCheckOnSqlite, ColoursWhatIsWrongOnATerminalOnly) {
  const std::vector<std::string> arguments = {"check", ConnectionText(), "", "--logs", folder_ / "none"};
  std::map<std::string, std::string> environment = {{"QMX_COMPONENTS", components_}};
  const std::string coloured = TerminalProcess(QMX_ADMIN, arguments, environment).Wait().shown;
  EXPECT_THAT(coloured, AllOf(HasSubstr("\033[32mok\033[0m           connection: "),
                              HasSubstr("\033[1;31mwrong\033[0m        log folder: ")));
  environment["NO_COLOR"] = "1";
  EXPECT_THAT(TerminalProcess(QMX_ADMIN, arguments, environment).Wait().shown, Not(HasSubstr("\033")));
}

}  // namespace
}  // namespace qmx::test
