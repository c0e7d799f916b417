// Bad input as users see it: exit status, standard error and logs. Existing data is kept.
#include <sys/stat.h>
#include <unistd.h>

#include <ostream>
#include <set>

#include "tests/startup/data_copy_process.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uintmax_t kDiskSize = 64 << 20;  // more than the database takes

class BadInput : public DataCopyProcess {
 protected:
  // A run that cannot get at the local database, or not at its control records, reaches the start-up trap.
  void ExpectStartUpFailure(const Process& copy) {
    EXPECT_EQ(copy.status, 2) << copy.err;
    EXPECT_THAT(Log("QMXDBSynclog.txt"), HasSubstr("Data Copy Failed:\r\nError is - "));
    EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  }
  // A run that fails in the copy itself writes to the copy log and releases the table.
  void ExpectFailedCopy(const Process& copy) {
    EXPECT_EQ(copy.status, 1) << copy.err;
    EXPECT_THAT(Log("tsmdm030.log"),
                HasSubstr("\"Copy Service Types\",\" Copy of Service Types from Orvan to Local DB failed\"\r\n"));
    EXPECT_THAT(InUse(), ElementsAre("0"));
  }

  // Lets a log be as long as a file may be in RunOnFullDisk.
  void FillDiskFor(const std::string& log) {
    WriteFile(folder_ / log, "");
    std::filesystem::resize_file(folder_ / log, kDiskSize);
  }
  Process RunOnFullDisk(const std::string& line) {
    const std::string limited =
        "exec prlimit --fsize=" + std::to_string(kDiskSize) + " env --ignore-signal=XFSZ \"$0\" \"$1\"";
    return test::Run("/bin/sh", {"-c", limited, QMXDATACOPY, line}, environment_, folder_.Path());
  }

  // Has the service types served by a manifest of the test's own.
  void ServeBy(const std::string& library) {
    environment_["QMX_COMPONENTS"] = folder_ / "components";
    std::filesystem::create_directory(folder_ / "components");
    WriteFile(folder_ / "components/own.component",
              "library = " + library + "\nprogid = ServiceTypes.ServiceTypesManager\n");
  }
};

// A local database that cannot be had. "#" stands for the test's folder.
struct BadDatabase {
  const char* name;
  const char* connection;
  const char* database;
  std::int32_t number;  // of the error, and its texts: what follows them repeats the input
  const char* source;
  const char* description;
};
std::ostream& operator<<(std::ostream& out, const BadDatabase& bad) { return out << bad.name; }

const BadDatabase kBadDatabases[] = {
    {"AnUnknownKeyword", "Provider=SQLite;Data Source=#/local.db;Colour=red", "", 5, "SQLite",
     "The connection text holds the keyword \"Colour\", which is unknown; for SQLite there are Provider, Data Source "
     "and Mode."},
    {"ATextThatCannotBeRead", "local.db", "", 5, "Connection text",
     "The connection text cannot be read: \"=\" is missing after the piece at character 1. It must be keyword=value, "
     "further ones after \";\"."},
    {"AnUnknownProvider", "Provider=Papyrus;Data Source=#/local.db", "", 5, "ADODB.Connection",
     "The connection text names the provider \"Papyrus\", which is unknown. It must be of the form "
     "\"Provider=SQLite;Data Source=FILE\" or \"Driver=NAME;...\", \"DSN=NAME\" or \"FILEDSN=FILE\"."},
    {"AMissingFolder", "Provider=SQLite;Data Source=#/none/local.db", "", -2147467259, "SQLite",
     "The database #/none/local.db cannot be opened: there is no folder #/none."},
    {"AMissingFile", "Provider=SQLite;Data Source=#/none.db", "", -2147467259, "SQLite",
     "The database #/none.db cannot be opened: there is no such file. Check the name, or make the database with "
     "\"qmxadmin init\"."},
    {"AFileThatIsNone", "Provider=SQLite;Data Source=#/letter.txt", "", -2147467259, "SQLite",
     "The database #/letter.txt cannot be opened: the file is no SQLite database."},
    {"AMissingDefaultDatabase", "Provider=SQLite;Data Source=#", "nowhere", -2147467259, "SQLite",
     "The database #/nowhere.db cannot be opened: there is no such file. Check the name, or make the database with "
     "\"qmxadmin init\"."}};

class ABadDatabase : public BadInput, public testing::WithParamInterface<BadDatabase> {
 protected:
  std::string InTheFolder(std::string text) const {
    for (std::size_t at = 0; (at = text.find('#', at)) != std::string::npos;) {
      text.replace(at, 1, folder_.Path().string());
    }
    return text;
  }
  std::set<std::string> Files() const {
    std::set<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder_.Path())) names.insert(file.path().filename());
    return names;
  }
};
INSTANTIATE_TEST_SUITE_P(Each, ABadDatabase, testing::ValuesIn(kBadDatabases),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(ABadDatabase, IsExplainedInItsErrorAndNotMade) {
  const std::string letter(2000, 'x');
  WriteFile(folder_ / "letter.txt", letter);
  const std::set<std::string> before = Files();
  pieces_.connection = InTheFolder(GetParam().connection);
  pieces_.database = GetParam().database;
  const Process copy = Copy();
  ExpectStartUpFailure(copy);
  const std::string description = InTheFolder(GetParam().description);
  EXPECT_THAT(copy.err, HasSubstr("\n  because of error " + std::to_string(GetParam().number) + ", " +
                                  GetParam().source + ": " + description));
  EXPECT_THAT(Log("tsmdm030.log"), HasSubstr("\"" + std::string(GetParam().source) + "\",\"" + description + "\"\r\n"));
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(ReadFile(folder_ / "letter.txt"), letter);
}

TEST_F(BadInput, ADatabaseOnAReadOnlyFileSystemLacksNoPermission) {
  std::filesystem::create_directory(folder_ / "mounted");
  const std::string readOnly = "mount --bind \"$2\" \"$2\" && mount -o remount,ro,bind \"$2\" && exec \"$0\" \"$1\"";
  std::filesystem::rename(folder_ / "local.db", folder_ / "mounted/local.db");
  pieces_.connection = "Provider=SQLite;Data Source=" + (folder_ / "mounted/local.db");
  if (test::Run("/usr/bin/unshare", {"--mount", "true"}).status != 0) GTEST_SKIP() << "This user may mount nothing.";
  const Process copy = test::Run(
      "/usr/bin/unshare", {"--mount", "/bin/sh", "-c", readOnly, QMXDATACOPY, pieces_.Line(), folder_ / "mounted"},
      environment_, folder_.Path());
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("The database " + (folder_ / "mounted/local.db") +
                                  " cannot be written: its file system is read-only."));
}

TEST_F(BadInput, APasswordInTheConnectionTextIsShownNowhere) {
  pieces_.connection = "Provider=Papyrus;PWD=hush-hush;Password=hush-hush";
  const Process copy = Copy();
  ExpectStartUpFailure(copy);
  EXPECT_THAT(copy.err + Log("QMXDBSynclog.txt") + Log("tsmdm030.log"), testing::Not(HasSubstr("hush")));
}

TEST_F(BadInput, TheRestOfAPasswordBehindASemicolonIsShownNowhere) {
  environment_["QMX_TRACE"] = folder_ / "trace.jsonl";
  for (const std::string begin : {"Provider=SQLite;", "Provider=Papyrus;", "Driver=none;"}) {
    pieces_.connection = begin + "PWD=hu;hush=hush";
    const Process copy = Copy();
    ExpectStartUpFailure(copy);
    EXPECT_THAT(copy.err + Log("QMXDBSynclog.txt") + Log("tsmdm030.log") + ReadFile(folder_ / "trace.jsonl"),
                testing::Not(HasSubstr("hush")));
  }
}

TEST_F(BadInput, AMissingLogDirectoryIsNamedBeforeAnythingChanges) {
  pieces_.logs = folder_ / "none";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("Path not found: " + pieces_.logs + "/QMXDBSynclog.txt [system: "));
  EXPECT_THAT(copy.err, HasSubstr("Usage:"));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_F(BadInput, ALogDirectoryThatIsAFileIsNamedBeforeAnythingChanges) {
  WriteFile(folder_ / "file", "");
  pieces_.logs = folder_ / "file";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr(pieces_.logs + "/QMXDBSynclog.txt"));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_F(BadInput, ALogDirectoryThatCannotBeWrittenIsNamedBeforeAnythingChanges) {
  pieces_.logs = "/proc/sys";  // refuses root as well
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("/proc/sys/QMXDBSynclog.txt"));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_F(BadInput, ACopyLogOnAFullDiskIsNamedWithItsPath) {
  FillDiskFor("logs/tsmdm030.log");
  const Process copy = RunOnFullDisk(pieces_.Line());
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("error 61, Text files: Disk full: " + pieces_.logs + "/tsmdm030.log"));
  EXPECT_THAT(Log("QMXDBSynclog.txt"), HasSubstr("Error is - 61: Disk full: " + pieces_.logs + "/tsmdm030.log\r\n"));
  EXPECT_THAT(Column("select count(*) from tsmdm030"), ElementsAre("3"));  // the copy itself was done
  EXPECT_THAT(InUse(), ElementsAre("1"));  // a run that cannot log its failure ends before it lets the table go
}

TEST_F(BadInput, ACopyLogOnAFullDiskLeavesTheNewRowsOfAWholeCopy) {
  environment_["QMX_COPY"] = "whole";
  FillDiskFor("logs/tsmdm030.log");
  EXPECT_EQ(RunOnFullDisk(pieces_.Line()).status, 2);
  EXPECT_THAT(ServiceTypes(), ElementsAre("INS", "PRV", "REP"));
  EXPECT_THAT(InUse(), ElementsAre("1"));
}

TEST_F(BadInput, ANamedPipeInPlaceOfTheCopyLogDoesNotHangTheRun) {
  ASSERT_EQ(mkfifo((folder_ / "logs/tsmdm030.log").c_str(), 0600), 0);
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  const std::string told = pieces_.logs + "/tsmdm030.log is a named pipe, not a regular file";
  EXPECT_THAT(copy.err, HasSubstr("error 75, Text files: Path/file access error: " + told));
  EXPECT_THAT(Log("QMXDBSynclog.txt"), HasSubstr("Error is - 75: Path/file access error: " + told + "\r\n"));
}

TEST_F(BadInput, ALinkOfAnotherUserInPlaceOfTheCopyLogIsNotFollowed) {
  if (geteuid() != 0) GTEST_SKIP() << "Only root can make a link that belongs to somebody else.";
  WriteFile(folder_ / "precious", "as it was");
  std::filesystem::create_symlink(folder_ / "precious", folder_ / "logs/tsmdm030.log");
  ASSERT_EQ(lchown((folder_ / "logs/tsmdm030.log").c_str(), 65533, 65533), 0);
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("error 70, Text files: Permission denied: " + pieces_.logs +
                                  "/tsmdm030.log is a symbolic link of the user 65533"));
  EXPECT_EQ(ReadFile(folder_ / "precious"), "as it was");
}

TEST_F(BadInput, ATextOfTheErpThatIsNoUtf8NamesMemberByteAndRecord) {
  std::filesystem::copy_file(pieces_.component2, folder_ / "latin1.db");
  pieces_.component2 = folder_ / "latin1.db";
  const Process changed =
      test::Run("/usr/bin/sqlite3", {pieces_.component2,
                                     "update tsmdm030 set \"desc\" = cast(x'4DFC6C6C6572' as text) where "
                                     "cstp = (select max(cstp) from tsmdm030)"});
  ASSERT_EQ(changed.status, 0) << changed.err;
  const Process copy = Copy();
  ExpectFailedCopy(copy);
  EXPECT_THAT(copy.err, HasSubstr("because of error 13, Components: Type mismatch: the text is no valid UTF-8 from "
                                  "byte 2 on. [member: getServiceTypeDescription; "));
  EXPECT_THAT(copy.err, HasSubstr("column: dsca; table: tsmdm030; key: cstp='"));
  EXPECT_EQ(ServiceTypes().size(), 2u);  // those before it
}

TEST_F(BadInput, AFailureLogOnAFullDiskIsReportedOnStandardError) {
  FillDiskFor("logs/QMXDBSynclog.txt");
  const Process copy = RunOnFullDisk("x,y,tsmdm030," + pieces_.logs + ",OrvanSandbox");
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("error 61, Text files: Disk full: " + pieces_.logs + "/QMXDBSynclog.txt"));
  EXPECT_THAT(copy.err, HasSubstr("because of error 9999"));
  EXPECT_THAT(copy.err, HasSubstr("Usage:"));
}

TEST_F(BadInput, MissingControlRecordsAreNamed) {
  Sql("drop table tstables");
  const Process copy = Copy();
  ExpectStartUpFailure(copy);
  EXPECT_THAT(copy.err, HasSubstr("error -2147217865, SQLite: no such table: tstables. ["));
  EXPECT_THAT(
      Log("tsmdm030.log"),
      HasSubstr(
          "\"Data Copy In Progress\",\"Checking of whether Data Copy is in Progress for table tsmdm030 Failed\""));
}

TEST_F(BadInput, AMissingLocalTableIsNamed) {
  Sql("alter table tsmdm030 rename to kept");
  const Process copy = Copy();
  ExpectFailedCopy(copy);
  EXPECT_THAT(copy.err, HasSubstr("error -2147217865, SQLite: no such table: tsmdm030. ["));
  EXPECT_THAT(Column("select cstp from kept"), ElementsAre("OLD"));
}

TEST_F(BadInput, AMissingLocalColumnIsNamed) {
  Sql("alter table tsmdm030 drop column ract");
  const Process copy = Copy();
  ExpectFailedCopy(copy);
  EXPECT_THAT(copy.err, HasSubstr("error 3265, ADODB.Recordset: There is no column \"ract\" in \"tsmdm030\". ["));
  EXPECT_THAT(ServiceTypes(), IsEmpty());  // a full copy deletes before it fills its first row
}

TEST_F(BadInput, ATableCodeWithAQuoteIsRefusedBeforeItReachesTheDatabase) {
  pieces_.table = "x' or 'a'='a";
  const Process copy = Copy();
  ExpectStartUpFailure(copy);
  EXPECT_THAT(copy.err, HasSubstr("error -2147217900, SQL text: The value x' or 'a' holds a quote: "));
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_F(BadInput, AnErpComponentThatIsNotRegisteredIsNamedWithThePlacesLookedAt) {
  environment_["QMX_COMPONENTS"] = folder_ / "none";
  const Process copy = Copy();
  ExpectFailedCopy(copy);
  EXPECT_THAT(copy.err,
              HasSubstr("error 429, Components: Cannot create an object of \"ServiceTypes.ServiceTypesManager\"; " +
                        (folder_ / "none") +
                        ": No such file or directory. The folders of QMX_COMPONENTS are searched for "
                        "component manifests. ["));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
}

TEST_F(BadInput, AnErpLibraryThatIsMissingIsNamed) {
  ServeBy("gone.so");
  const Process copy = Copy();
  ExpectFailedCopy(copy);
  const std::string library = folder_ / "components/gone.so";
  EXPECT_THAT(copy.err, HasSubstr("error 429, "));
  EXPECT_THAT(copy.err, HasSubstr(", library " + library + ": " + library + ": cannot open shared object file: "));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
}

TEST_F(BadInput, AnErpLibraryOfAnotherVersionIsNamed) {
  ServeBy(OTHER_VERSION);
  const Process copy = Copy();
  ExpectFailedCopy(copy);
  EXPECT_THAT(copy.err, HasSubstr("error 429, "));
  EXPECT_THAT(copy.err, HasSubstr(std::string(OTHER_VERSION) +
                                  ": it speaks version 7 of the component interface, this program version 1; "
                                  "rebuild it against this version. "));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
}

TEST_F(BadInput, AnErpFileThatIsMissingIsNamed) {
  pieces_.component2 = folder_ / "none.db";
  const Process copy = Copy();
  ExpectFailedCopy(copy);
  EXPECT_THAT(copy.err,
              HasSubstr("error 53, OrvanSandbox: There is no sandbox file \"" + (folder_ / "none.db") + "\". "));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
}

TEST_F(BadInput, ASchedulingServerThatIsNotRegisteredIsNamedBeforeAnythingChanges) {
  ServeBy("gone.so");
  pieces_.rest = ",17";
  const Process copy = Copy();
  ExpectStartUpFailure(copy);
  EXPECT_THAT(copy.err, HasSubstr("QMXServer20.clsMessHandler"));
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_F(BadInput, ATraceThatCannotBeWrittenIsNamedBeforeAnythingChanges) {
  environment_["QMX_TRACE"] = folder_ / "none/trace.jsonl";
  const Process copy = Copy();
  EXPECT_EQ(copy.status, 2);
  EXPECT_THAT(copy.err, HasSubstr("error 75, Trace: The trace file \"" + (folder_ / "none/trace.jsonl") +
                                  "\" that QMX_TRACE names cannot be written: No such file or directory.\n"));
  EXPECT_THAT(ServiceTypes(), ElementsAre("OLD"));
  EXPECT_THAT(InUse(), IsEmpty());
}

TEST_F(BadInput, AnEmptyTableNameIsReportedAfterTheRun) {
  pieces_.table = "";
  const Process copy = Copy();
  ExpectStartUpFailure(copy);
  EXPECT_THAT(Log("QMXDBSynclog.txt"), HasSubstr("Error is - 9: "));
}

}  // namespace
}  // namespace qmx::test
