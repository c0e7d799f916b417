#include <cstdlib>

#include "platform/odbc/connection.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/driver_manager.h"
#include "tests/platform/database/record_set_test.h"
#include "tests/support/environment.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::vector<DriverUnderTest> OverOdbc() {
  return DriversUnderTest([](const DriverUnderTest& driver) {
    return driver.name == "SQLiteOverOdbc" || !driver.name.starts_with("SQLite");
  });
}

class OpeningOverOdbc : public RecordSetTest {
 protected:
  bool IsServer() const { return GetParam().name != "SQLiteOverOdbc"; }

  Error RaisedByOpening(const std::string& text) {
    Connection other({&base->GetDriver()}, nullptr);
    return Raised([&] { other.Open(text, "", ""); });
  }

  // "keyword = value" lines of the connection text, as the files of data sources have them.
  std::string AsLines() {
    std::string lines;
    const ConnectionText text(base->ConnectionText());
    for (const auto& [keyword, value] : text.Pairs()) {
      if (keyword != "PWD") lines += keyword + " = " + value + "\n";
    }
    return lines;
  }
  std::string Password() { return OdbcKeyword(base->ConnectionText(), "PWD"); }
};
INSTANTIATE_TEST_SUITE_P(Over, OpeningOverOdbc, testing::ValuesIn(OverOdbc()), DriverName);

class OpeningAServer : public OpeningOverOdbc {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(OpeningAServer);
INSTANTIATE_TEST_SUITE_P(Over, OpeningAServer, testing::ValuesIn(ServersUnderTest()), DriverName);

TEST_P(OpeningAServer, AWrongPasswordIsARefusedLogInAndIsNotShown) {
  const Error error = RaisedByOpening(WithOdbcKeyword(base->ConnectionText(), "PWD", "ForgottenSecret"));
  EXPECT_EQ(error.Number(), -2147217843);
  EXPECT_THAT(error.Description(), HasSubstr("qmx"));
  EXPECT_THAT(error.Description(), HasSubstr("Check the user and the password."));
  EXPECT_THAT(DescribeChain(error), Not(HasSubstr("ForgottenSecret")));
  EXPECT_THAT(error.DetailOf("connection text"), HasSubstr("PWD=***"));
}

TEST_P(OpeningAServer, UserAndPasswordMayComeBesideTheText) {
  const ConnectionText whole(base->ConnectionText());
  std::string text;
  for (const auto& [keyword, value] : whole.Pairs()) {
    if (keyword != "UID" && keyword != "PWD") text += keyword + "=" + value + ";";
  }
  Connection other({&base->GetDriver()}, nullptr);
  other.Open(text, "qmx", Password());
  EXPECT_EQ(other.defaultdatabase(), connection.defaultdatabase());
}

TEST_P(OpeningAServer, AServerThatDoesNotAnswerIsNamed) {
  const Error error = RaisedByOpening(WithOdbcKeyword(base->ConnectionText(), "PORT", "1"));
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), HasSubstr("127.0.0.1"));
  EXPECT_THAT(error.Description(), HasSubstr("whether it runs"));
}

TEST_P(OpeningOverOdbc, AnUnknownDriverIsNamed) {
  const Error error = RaisedByOpening(WithOdbcKeyword(base->ConnectionText(), "DRIVER", "No Such Driver"));
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), HasSubstr("No Such Driver"));
  EXPECT_THAT(error.Description(), HasSubstr(kCheckNames));
}

TEST_P(OpeningOverOdbc, ADataSourceOfTheUsersServes) {
  const TempFolder folder;
  const std::string source = "local" + GetParam().name;  // what was read once is kept
  const std::string text = base->ConnectionText();
  const std::string postgresqlsWords =
      "Servername = " + OdbcKeyword(text, "SERVER") + "\nUsername = " + OdbcKeyword(text, "UID") + "\n";
  WriteFile(folder / "odbc.ini", "[" + source + "]\n" + AsLines() + (IsServer() ? postgresqlsWords : ""));
  const EnvironmentVariable ini("ODBCINI", (folder / "odbc.ini").c_str());
  CreatePeople();
  AddPerson("A", "Ann");
  Connection other({&base->GetDriver()}, nullptr);
  other.Open("DSN=" + source, "", Password());
  EXPECT_EQ(other.Execute("update people set name='Bob'"), 1);
}

TEST_P(OpeningOverOdbc, AFileOfADataSourceServes) {
  const TempFolder folder;
  WriteFile(folder / "local.dsn", "[ODBC]\n" + AsLines());
  CreatePeople();
  AddPerson("A", "Ann");
  Connection other({&base->GetDriver()}, nullptr);
  other.Open("FILEDSN=" + folder / "local.dsn", "", Password());
  EXPECT_EQ(other.Execute("update people set name='Bob'"), 1);
}

TEST_P(OpeningAServer, TheConnectionTextTakesPrecedenceOverTheFile) {
  const TempFolder folder;
  WriteFile(folder / "local.dsn", "[ODBC]\n" + AsLines());
  const Error error = RaisedByOpening("UID=nobody;FILEDSN=" + folder / "local.dsn" + ";PWD=x");
  EXPECT_EQ(error.Number(), -2147217843);
  EXPECT_THAT(error.Description(), HasSubstr("nobody"));
}

TEST_P(OpeningOverOdbc, AValueWithASemicolonInAFileNeedsBraces) {
  const TempFolder folder;
  WriteFile(folder / "local.dsn", "[ODBC]\n; a note\n" + AsLines() + "PWD = hush;hush=hush\n");
  const Error error = RaisedByOpening("FILEDSN=" + folder / "local.dsn");
  EXPECT_EQ(error.Number(), 5);
  EXPECT_THAT(error.Description(), testing::StartsWith("The data source file " + folder / "local.dsn" + ", line "));
  EXPECT_THAT(error.Description(),
              testing::EndsWith(": the value holds a \";\". Put it in braces, with \"}\" doubled inside."));
  EXPECT_THAT(DescribeChain(error), Not(HasSubstr("hush")));

  CreatePeople();
  AddPerson("A", "Ann");
  WriteFile(folder / "braced.dsn", "[ODBC]\n" + AsLines() + (IsServer() ? "PWD = {wild;{}}rose}\n" : ""));
  Connection other({&base->GetDriver()}, nullptr);
  other.Open("FILEDSN=" + folder / "braced.dsn", "", "");
  EXPECT_EQ(other.Execute("update people set name='Bob'"), 1);
}

TEST_P(OpeningAServer, AMissingDatabaseIsNoMissingServer) {
  const Error error = RaisedByOpening(WithOdbcKeyword(base->ConnectionText(), "DATABASE", "nowhere"));
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), HasSubstr("nowhere"));
  EXPECT_THAT(error.Description(), HasSubstr("Check the database's name."));
}

TEST_P(OpeningOverOdbc, AMissingFileIsNamed) {
  const Error error = RaisedByOpening("FILEDSN=/nowhere/local.dsn");
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_EQ(error.Description(), "The data source file /nowhere/local.dsn cannot be read or has no section [ODBC].");
}

TEST_P(OpeningOverOdbc, AMissingDataSourceIsReportedWithAdvice) {
  const Error error = RaisedByOpening("DSN=no_such_source");
  EXPECT_EQ(error.Number(), -2147467259);
  EXPECT_THAT(error.Description(), HasSubstr("IM002"));
  EXPECT_THAT(error.Description(), HasSubstr(kCheckNames));
}

TEST_P(OpeningOverOdbc, TheDefaultDatabaseIsTheOneThatIsRead) {
  const auto second = GetParam().make();
  CreatePeople();
  std::string name;
  {
    Connection other({&second->GetDriver()}, nullptr);
    other.Open(second->ConnectionText(), "", "");
    name = other.defaultdatabase();
    other.Execute("create table towns (town varchar(20))");
    other.Execute("insert into towns values ('Oslo')");
  }
  if (!IsServer()) {  // both are files "local.db", each in a folder of its own
    const std::string file = OdbcKeyword(base->ConnectionText(), "Database");
    std::filesystem::copy_file(OdbcKeyword(second->ConnectionText(), "Database"),
                               std::filesystem::path(file).replace_filename("second.db"));
    name = "second";
  }
  connection.CommandTimeout(17);
  connection.defaultdatabase(name);
  EXPECT_EQ(connection.defaultdatabase(), name);
  EXPECT_EQ(Opened("select * from towns")->Fields("town").Value(), Variant("Oslo"));
  EXPECT_EQ(Raised([&] { Opened("select * from people"); }).Number(), -2147217865);
}

TEST_P(OpeningOverOdbc, ATextForAnotherSystemIsRefusedWithTheForms) {
  const Error error = RaisedByOpening("Server=127.0.0.1;UID=x;PWD=ForgottenSecret");
  EXPECT_EQ(error.Number(), 5);
  EXPECT_THAT(error.Description(), HasSubstr("\"Driver=NAME;...\", \"DSN=NAME\" or \"FILEDSN=FILE\""));
  EXPECT_THAT(DescribeChain(error), Not(HasSubstr("ForgottenSecret")));
}

}  // namespace
}  // namespace qmx::test
