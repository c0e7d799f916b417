#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/sqlite/driver.h"
#include "tests/support/temp_folder.h"
#include "tests/support/terminal_process.h"
#include "tests/tools/qmxadmin/admin_on_a_system.h"
#include "tests/tools/qmxadmin/output_lines.h"
#include "tests/tools/qmxadmin/sandbox_erp.h"
#include "tools/qmxadmin/check/check_logs.h"

namespace qmx::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

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

TEST_P(QmxAdminCheck, FindsNothingWrongIfEverythingIsThere) {
  const Process run = CheckAll();
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_EQ(Lines(run.out, "ok           "), 48U) << run.out;
  EXPECT_EQ(Lines(run.out, ""), 48U) << run.out;
  EXPECT_THAT(run.out, StartsWith("ok           connection: " + GetParam().name + "\nok           default database: "));
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("\nok           table tsmdm030: 4 columns, as expected\n"),
                    HasSubstr("\nok           table tscalender: 3 columns, as expected\n"),
                    HasSubstr("\nok           log folder: " + Logs() + " can be written\n"),
                    HasSubstr("\nok           tsmdm030, ServiceTypes.ServiceTypesManager: answers and has records\n"),
                    HasSubstr("\nok           tcccp030, Calendars.CalendarManager: answers and has no records\n"),
                    HasSubstr("\nok           audit.AuditReader: can be created\n"),
                    HasSubstr("\nok           QMXServer20.ClientRequests: can be created\n")));
  EXPECT_TRUE(std::filesystem::is_empty(Logs()));
}

TEST_P(QmxAdminCheckOnSqlite, PrintsWhatWasNotChecked) {
  const Process run = Check();
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nnot checked  log folder: --logs is not given\n"),
                             HasSubstr("\nok           tsmdm030, ServiceTypes.ServiceTypesManager: can be created\n"),
                             HasSubstr("\nnot checked  ERP: --component is not given, so no manager was called\n")));
}

TEST_P(QmxAdminCheck, WarnsThatAnOlderControlTableDistinguishesCase) {
  EXPECT_THAT(Check().out,
              HasSubstr("\nok           table tstables: 6 columns, as expected; TableName does not ignore case, "
                        "so a copy of TSMDM030 does not see the flag of tsmdm030\n"));
  Execute("drop table tstables");
  EXPECT_EQ(Admin({"init"}).status, 0);
  EXPECT_THAT(Check().out, HasSubstr("\nok           table tstables: 6 columns, as expected\n"));
}

TEST_P(QmxAdminCheck, ReportsEachColumnThatDiffersAndEachTableThatIsMissing) {
  Execute("drop table tsmdm030");
  Execute("create table tsmdm030 (cstp integer, dsca varchar(10), ract varchar(10))");
  Execute("drop table tstables");
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\nwrong        table tsmdm030: the column cstp holds 32-bit integers, not texts. "
                                 "\"qmxadmin init --print\" shows the expected definition.\n"
                                 "wrong        table tsmdm030: the column prod is missing. "
                                 "\"qmxadmin init --print\" shows the expected definition.\n"
                                 "wrong        table tsmdm030: it has no key, not the key cstp. "
                                 "\"qmxadmin init --print\" shows the expected definition.\n"
                                 "ok           table tsmdm100"));
  EXPECT_THAT(run.out, HasSubstr("\nwrong        table tstables: it is missing. \"qmxadmin init\" creates it.\n"));
  EXPECT_EQ(Lines(run.out, "wrong"), 4U);
}

TEST_P(QmxAdminCheckOnSqlite, PrintsTheSameAsJson) {
  Execute("drop table tstables");
  const Process run = Check({"--json"});
  EXPECT_EQ(run.status, 1);
  const auto findings = nlohmann::json::parse(run.out);
  EXPECT_EQ(findings[0], nlohmann::json::parse(R"({"check": "connection", "state": "ok", "told": ")" + GetParam().name +
                                               R"(", "what_to_do": null})"));
  EXPECT_EQ(findings[19], nlohmann::json::parse(R"({"check": "table tstables", "state": "wrong",
      "told": "it is missing", "what_to_do": "\"qmxadmin init\" creates it."})"));
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

TEST_P(QmxAdminCheckOnSqlite, ReportsThatTheLogFolderIsMissingOrAFile) {
  WriteFile(folder_ / "file", "");
  for (const std::string& folder : {folder_ / "none", folder_ / "file"}) {
    const Process run = Check({"--logs", folder});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("\nwrong        log folder: there is no folder " + folder +
                                   ". Create it or name another folder.\n"));
  }
}

TEST_P(QmxAdminCheckOnSqlite, ReportsThatTheLogFolderCannotBeWritten) {
  const Process run = Check({"--logs", "/proc/self"});  // nobody makes files there, not even root
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nwrong        log folder: no file can be created in /proc/self: "),
                             HasSubstr("Give the user that runs the copies write access.")));
}

TEST_P(QmxAdminCheckOnSqlite, ReadsTheLogFolderAsTheCopiesDo) {
  const Process run = test::Run(QMX_ADMIN, {"check", ConnectionText(), "", "--logs", "C:\\log"},
                                {{"QMX_COMPONENTS", components_}, {"QMX_SYSTEM_DRIVE", folder_.Path()}});
  EXPECT_THAT(run.out, HasSubstr("\nok           log folder: " + Logs() + " can be written\n"));
}

TEST_P(QmxAdminCheckOnSqlite, ReportsALogThatCannotBeWritten) {
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

TEST_P(QmxAdminCheckOnSqlite, ReportsManagersThatDoNotAnswer) {
  const Process run = CheckAll(folder_ / "none.db");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 17U) << run.out;
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: error "),
                             HasSubstr("none.db"),
                             HasSubstr("The ERP's component server reported this. Check its configuration and the "
                                       "--component argument.")));
}

TEST_P(QmxAdminCheckOnSqlite, ReportsTheOneManagerThatDoesNotAnswer) {
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

TEST_P(QmxAdminCheckOnSqlite, ReportsComponentsThatAreNotRegistered) {
  components_ = folder_.Path();
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Lines(run.out, "wrong"), 22U) << run.out;  // the tables and the audit classes; dates are built in
  EXPECT_THAT(
      run.out,
      AllOf(HasSubstr("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: ServiceTypes.ServiceTypesManager is "
                      "not registered. One of the manifests must name it. \"qmxadmin components\" lists them.\n"),
            HasSubstr("\nwrong        audit.period: audit.period is not registered. "),
            HasSubstr("\nok           java:java.util.Date: can be created\n"),
            HasSubstr("\nnot checked  QMXServer20.clsMessHandler: it is not registered")));
}

TEST_P(QmxAdminCheckOnSqlite, ReportsARecordClassThatIsNotRegistered) {
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

TEST_P(QmxAdminCheckOnSqlite, ReportsAServerThatDoesNotLoad) {
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

TEST_P(QmxAdminCheckOnSqlite, ReportsAManifestThatCannotBeRead) {
  WriteFile(folder_ / "broken.component", "library = a.so\nprogid Test.Probe\n");
  components_ += ":" + folder_.Path().string();
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\nwrong        components: " + (folder_ / "broken.component") + ", line 2: "));
}

TEST_P(QmxAdminCheckOnSqlite, TellsRunRecordsThatCannotBeWritten) {
  ASSERT_EQ(mkfifo((Logs() + "/QMXRuns.jsonl").c_str(), 0600), 0);
  const Process run = Check({"--logs", Logs()});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\nwrong        log QMXRuns.jsonl: it is a named pipe, not a regular file. "));
  EXPECT_EQ(Lines(run.out, "wrong"), 1U);
}

TEST_P(QmxAdminCheckOnSqlite, LeavesRunRecordsAsTheyAre) {
  WriteFile(Logs() + "/QMXRuns.jsonl", "\n{}");
  EXPECT_EQ(Check({"--logs", Logs()}).status, 0);
  EXPECT_EQ(ReadFile(Logs() + "/QMXRuns.jsonl"), "\n{}");
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

TEST_P(QmxAdminCheckOnSqlite, PrintsFailedChecksOnlyIfItIsQuiet) {
  EXPECT_EQ(Check({"--quiet"}).out, "");
  Execute("drop table tstables");
  const Process run = Check({"--quiet"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "wrong        table tstables: it is missing. \"qmxadmin init\" creates it.\n");
}

TEST_P(QmxAdminCheckOnSqlite, ReportsATableThatCannotBeWritten) {
  Execute("alter table tsmdm030 rename to rows_of_tsmdm030");
  Execute("create view tsmdm030 as select * from rows_of_tsmdm030");
  const Process run = Check();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\nwrong        table tsmdm030: insert is refused: "));
  EXPECT_THAT(run.out, HasSubstr("Grant the missing privileges to the user.\n"));
}

TEST_P(QmxAdminCheckOnSqlite, ChangesNoRowWhenItTriesTheRights) {
  Execute("insert into tsmdm030 (cstp, dsca) values ('A', 'kept')");
  EXPECT_EQ(Check().status, 0);
  EXPECT_THAT(Column("select dsca from tsmdm030"), testing::ElementsAre("kept"));
}

TEST_P(QmxAdminCheckOnSqlite, ReportsHowMuchRoomTheLogsHave) {
  EXPECT_THAT(Check({"--logs", Logs()}).out,
              testing::ContainsRegex("\nok           room for logs: [0-9]+ MiB free on the file system of /"));
}

TEST(TheRoomForLogs, IsEnoughFromSixteenMebibytesOn) {
  EXPECT_TRUE(IsEnoughRoom(16 * 1024 * 1024));
  EXPECT_FALSE(IsEnoughRoom(16 * 1024 * 1024 - 1));
  EXPECT_FALSE(IsEnoughRoom(0));
}

TEST_P(QmxAdminCheckOnSqlite, ReportsALogThatBelongsToSomebodyElse) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  for (const char* name : {"/tsmdm030.log", "/QMXRuns.jsonl"}) WriteFile(Logs() + name, "");
  EXPECT_EQ(Check({"--logs", Logs()}).status, 0);
  ASSERT_EQ(chown(Logs().c_str(), 65534, 65534), 0);
  const Process run = Check({"--logs", Logs()});
  EXPECT_EQ(run.status, 1);
  for (const char* name : {"tsmdm030.log", "QMXRuns.jsonl"}) {
    EXPECT_THAT(run.out, HasSubstr(std::string("\nwrong        log ") + name +
                                   ": it belongs to root, not to nobody. Change its owner to the user that runs the "
                                   "copies.\n"));
  }
}

}  // namespace
}  // namespace qmx::test
