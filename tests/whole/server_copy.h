// Shared by tests of copies into a server: a company, a database on the server with the local tables, the program as a
// process, and the expectations after a failed run.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/odbc/connection.h"
#include "platform/odbc/connection_string.h"
#include "schema/local_tables.h"
#include "tests/support/environment.h"
#include "tests/support/lent_database.h"
#include "tests/support/row_texts.h"
#include "tests/whole/copy_process.h"

namespace qmx::test {

inline constexpr const char* kLutm = "2001-02-03 04:05:06";

class CopyIntoAServer : public testing::TestWithParam<DriverUnderTest> {
 protected:
  explicit CopyIntoAServer(std::map<std::string, int> sizes = {}) : company_(std::move(sizes)) {
    database_.TablesAreChanged();  // by most of these tests
  }

  bool IsPostgresql() const { return GetParam().name == "PostgreSQL"; }
  std::string ConnectionText() { return database_.Base().ConnectionText(); }
  CopyProcesses Program() { return {company_, ConnectionText(), ""}; }
  // With a statement that the driver runs on every new connection.
  CopyProcesses ProgramThatRunsFirst(const std::string& statement) {
    return {company_, WithOdbcKeyword(ConnectionText(), IsPostgresql() ? "ConnSettings" : "INITSTMT", statement), ""};
  }

  void Sql(const std::string& statement) { database_.Quiet().Execute(statement); }
  std::vector<std::string> Column(const std::string& query) { return test::RowTexts(database_.Quiet(), query, 1); }
  // The table's rows by their keys, the values joined by "|".
  std::vector<std::string> RowTexts(const std::string& table, const std::string& condition = "1=1") {
    const LocalTable& description = LocalTableNamed(table);
    std::string key;
    for (const std::string& column : description.key) key += (key.empty() ? "" : ", ") + column;
    return test::RowTexts(database_.Quiet(), "select * from " + table + " where " + condition + " order by " + key,
                          description.columns.size());
  }
  std::string Value(const std::string& query) {
    const std::vector<std::string> values = Column(query);
    return values.empty() ? "no row" : values[0];
  }
  std::string InUse() { return Value("select in_use from tstables"); }
  std::string Lutm() { return Value("select lutm from tstables"); }

  void ControlRecord(const std::string& table, std::int16_t syncMethod) {
    Sql("insert into tstables (tablename, in_use, syme, lutm) values ('" + table + "', 0, " +
        std::to_string(syncMethod) + ", '" + kLutm + "')");
  }

  // A failure that the program could report everywhere. The table is released.
  void ExpectFailure(const CopyProcesses& program, const Process& ended, const std::string& table) {
    EXPECT_EQ(ended.status, 1) << ended.err;
    EXPECT_EQ(InUse(), "0");
    EXPECT_EQ(Lutm(), kLutm);
    EXPECT_THAT(program.Log(table), testing::EndsWith("ailed\"\r\n"));
    EXPECT_THAT(program.Board(), testing::HasSubstr("(" + table + ") : Data copy FAILED\n"));
    EXPECT_THAT(program.Board(), testing::EndsWith("status | 17 | " + table + " | 20\n"));
    EXPECT_EQ(program.File("QMXDBSynclog.txt"), "");
  }

  // A failure after which the table could not be released. It is reported only in the logs and on standard error.
  void ExpectFailureOfTheReleaseToo(const CopyProcesses& program, const Process& ended, const std::string& table) {
    EXPECT_EQ(ended.status, 2) << ended.err;
    const std::string text = "Release of Data copy in Progress flag for table " + table + " Failed";
    EXPECT_THAT(
        ended.err,
        testing::HasSubstr(", ReleaseCopyInProgress: " + text +
                           " [what to do: if the table is still in progress, release it with \"qmxadmin release\"]\n"));
    EXPECT_THAT(program.File("QMXDBSynclog.txt"), testing::HasSubstr("Data Copy Failed:\r\nError is - "));
    EXPECT_THAT(program.File("QMXDBSynclog.txt"), testing::HasSubstr(": " + text + "\r\n"));
    EXPECT_THAT(program.Board(), testing::Not(testing::HasSubstr("FAILED")));
    EXPECT_EQ(program.File("evtlog.txt"), "");
  }

  Company company_;
  LentDatabase database_{GetParam().name};
  WithoutLeakCheck withoutLeakCheck_;
};

inline std::string ServerName(const testing::TestParamInfo<DriverUnderTest>& info) { return info.param.name; }

}  // namespace qmx::test
