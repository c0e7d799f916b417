// The privileges of docs/databases.md are sufficient and all used: the program and its tool do everything that they can
// with a database and a user that were created with the page's own statements.
#include <unistd.h>

#include <cstdlib>

#include "schema/local_tables.h"
#include "tests/support/environment.h"
#include "tests/support/process.h"
#include "tests/whole/server_copy.h"

namespace qmx::test::granted_rights {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

class GrantedRights : public testing::TestWithParam<DriverUnderTest> {
 protected:
  GrantedRights() : root_(ServerText()), name_("granted_" + std::to_string(getpid()) + "_" + std::to_string(++count_)) {
    if (IsPostgresql()) {
      root_.Run("create role " + name_ + " login password 'x'");
      root_.Run("create database " + name_ + " owner " + name_ + " encoding 'UTF8' template template0");
    } else {
      root_.Run("create database " + name_ + " character set utf8mb4 collate utf8mb4_nopad_bin");
      root_.Run("create user " + name_ + "@'%' identified by 'x'");
      Grant("select, insert, update, delete, create, index");
    }
  }

  bool IsPostgresql() const { return GetParam().name == "PostgreSQL"; }
  std::string ServerText() const { return std::getenv(IsPostgresql() ? "QMX_TEST_POSTGRESQL" : "QMX_TEST_MARIADB"); }
  void Grant(const std::string& rights) { root_.Run("grant " + rights + " on " + name_ + ".* to " + name_ + "@'%'"); }

  // As the page has it: "Driver=...;Server=...;Port=...;Database=...;UID=...;PWD=...".
  std::string Text(const std::string& user) const {
    return std::string("Driver=") + (IsPostgresql() ? "PostgreSQL Unicode" : "MariaDB Unicode") +
           ";Server=127.0.0.1;Port=" + OdbcKeyword(ServerText(), "PORT") + ";Database=" + name_ + ";UID=" + user +
           ";PWD=x" + (IsPostgresql() ? ";Protocol=7.4-1" : "");
  }

  void Tool(const std::string& command, const std::string& user) {
    const Process ended = test::Run(QMXADMIN, {command, Text(user), ""});
    EXPECT_EQ(ended.status, 0) << ended.out << ended.err;
  }
  Process Run(const std::vector<std::string>& command, const std::string& user) {
    std::vector<std::string> arguments = command;
    arguments.insert(arguments.begin() + 1, {Text(user), ""});
    return test::Run(QMXADMIN, arguments, {{"QMX_COMPONENTS", SANDBOX_COMPONENTS}});
  }

  // Makes a user who may do this with the existing tables, and nothing else.
  std::string UserWho(const std::string& rights) {
    const std::string user = name_ + "_" + std::to_string(++users_);
    if (IsPostgresql()) {
      root_.Run("create role " + user + " login password 'x'");
      if (!rights.empty())
        OdbcConnection(Text(name_)).Run("grant " + rights + " on all tables in schema public to " + user);
    } else {
      root_.Run("create user " + user + "@'%' identified by 'x'");
      root_.Run("grant " + (rights.empty() ? "create temporary tables" : rights) + " on " + name_ + ".* to " + user +
                "@'%'");
    }
    return user;
  }

  void CopyEverything(const std::string& user) {
    const CopyProcesses program(company_, Text(user), "");
    for (const char* table : {"tsmdm030", "tsmdm140", "tcccp030", "tssoc200", "tcccp030=E00001=E"}) {
      const Process ended = program.Run(table);
      EXPECT_EQ(ended.status, 0) << ended.err;
      EXPECT_EQ(ended.err, "");
    }
    EXPECT_THAT(program.Log("tssoc200"), HasSubstr("records Inserted"));
  }

  inline static int count_ = 0;
  int users_ = 0;
  Company company_;
  OdbcConnection root_;
  std::string name_;
  WithoutLeakCheck withoutLeakCheck_;
};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GrantedRights);
INSTANTIATE_TEST_SUITE_P(Over, GrantedRights, testing::ValuesIn(ServersUnderTest()), ServerName);

TEST_P(GrantedRights, AreEnoughToMakeTheTablesAndToCopyIntoThem) {
  Tool("init", name_);
  CopyEverything(name_);
  Tool("expand", name_);
  OdbcConnection connection(Text(name_));
  EXPECT_NE(connection.AskText("select count(*) from tscalender"), "0");
  connection.Run("update tstables set syme = 2");
  CopyEverything(name_);
  Tool("init", name_);  // with nothing left to make
}

TEST_P(GrantedRights, OnTheRowsAreEnoughOnceTheTablesAreThere) {
  Tool("init", name_);
  const std::string clerk = UserWho("select, insert, update, delete");
  CopyEverything(clerk);
  Tool("expand", clerk);
}

TEST_P(GrantedRights, OnTheRowsAreEnoughForInitOnceTheTablesAreThere) {
  Tool("init", name_);
  const Process again = Run({"init"}, UserWho("select, insert, update, delete"));
  EXPECT_EQ(again.status, 0) << again.err;
  EXPECT_THAT(again.out, HasSubstr("tscalender: exists\n"));
}

TEST_P(GrantedRights, ToReadAreEnoughForTheCommandsThatOnlyRead) {
  Tool("init", name_);
  CopyEverything(name_);
  Tool("expand", name_);
  const std::string reader = UserWho("select");
  const std::string calendar = OdbcConnection(Text(name_)).AskText("select min(ccal) from tscalender");
  const std::vector<std::vector<std::string>> commands = {{"status"},
                                                          {"calendar", calendar, "--from", "2026-11-20"},
                                                          {"verify", "tsmdm030", "--component", company_.Component()}};
  for (const std::vector<std::string>& command : commands) {
    const Process run = Run(command, reader);
    EXPECT_EQ(run.status, 0) << command[0] << ": " << run.out << run.err;
  }
}

TEST_P(GrantedRights, ThatAreMissingAreFoundByACheck) {
  Tool("init", name_);
  EXPECT_EQ(Run({"check"}, UserWho("select, insert, update, delete")).status, 0);
  const std::vector<std::pair<std::string, std::string>> users = {
      {"select", "insert"}, {"select, insert", "update"}, {"select, insert, update", "delete"}};
  for (const auto& [rights, missing] : users) {
    const Process run = Run({"check", "--quiet"}, UserWho(rights));
    EXPECT_EQ(run.status, 1) << rights;
    for (const LocalTable& table : LocalTables()) {
      EXPECT_THAT(run.out, ContainsRegex("wrong        table " + table.name + ": " + missing +
                                         " is refused: .*denied.* Grant the missing privileges to the user\\.\n"));
    }
  }
}

TEST_P(GrantedRights, ThatAreMissingAltogetherAreFoundByACheck) {
  Tool("init", name_);
  const Process run = Run({"check", "--quiet"}, UserWho(""));
  EXPECT_EQ(run.status, 1);
  for (const LocalTable& table : LocalTables()) {
    EXPECT_THAT(run.out, ContainsRegex("wrong        table " + table.name +
                                       ": error 70, ODBC: .*denied.* Grant the missing privileges to the user\\.\n"));
  }
}

}  // namespace
}  // namespace qmx::test::granted_rights
