// Runs the program as a process in its own folder, with a sandbox ERP of three service types, a local database with one
// older service type, and a folder for the logs.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "schema/dialect.h"
#include "schema/local_tables.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

// The pieces of a command line that copies service types; a test changes what it is about.
struct Pieces {
  std::string connection;
  std::string database;
  std::string table = "tsmdm030";
  std::string logs;
  std::string component1 = "OrvanSandbox";
  std::string component2;
  std::string rest;  // from the comma on

  std::string Line() const {
    return connection + ',' + database + ',' + table + ',' + logs + ',' + component1 + ',' + component2 + rest;
  }
};

class DataCopyProcess : public testing::Test {
 protected:
  DataCopyProcess() {
    std::filesystem::create_directory(folder_ / "logs");
    pieces_.connection = "Provider=SQLite;Data Source=" + (folder_ / "local.db");
    pieces_.logs = folder_ / "logs";
    pieces_.component2 = ErpFile();
    OnDatabase([](Connection& connection) {
      for (const LocalTable& table : LocalTables()) connection.Execute(SqliteDialect().CreateTable(table));
      connection.Execute("insert into tsmdm030 (cstp, dsca) values ('OLD', 'Older than all')");
    });
  }

  Process Run(const std::vector<std::string>& arguments) {
    return test::Run(QMXDATACOPY, arguments, environment_, folder_.Path());
  }
  Process Copy() { return Run({pieces_.Line()}); }

  void Sql(const std::string& statement) {
    OnDatabase([&](Connection& connection) { connection.Execute(statement); });
  }

  // With columns as a test wants them, for example with a check that refuses a value.
  void RemakeControlTable(const std::string& inUse, const std::string& lutm) {
    Sql("drop table tstables");
    Sql("create table tstables (TableName varchar(30) primary key, " + inUse +
        ", freq smallint, reqd smallint, syme smallint, " + lutm + ")");
  }

  std::vector<std::string> Column(const std::string& query) {
    std::vector<std::string> values;
    OnDatabase([&](Connection& connection) {
      const auto rows = database_.CreateRecordset("ADODB.Recordset");
      rows->Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
      for (; !rows->Eof(); rows->MoveNext()) values.push_back(rows->Fields(0).Value().ToText());
    });
    return values;
  }
  std::vector<std::string> ServiceTypes() { return Column("select cstp from tsmdm030 order by cstp"); }
  std::vector<std::string> InUse() { return Column("select in_use from tstables"); }

  std::string Log(const std::string& name) { return ReadFile(folder_ / ("logs/" + name)); }
  std::string Board() { return ReadFile(folder_ / "board"); }

  TempFolder folder_;
  Pieces pieces_;
  std::map<std::string, std::string> environment_{{"QMX_COMPONENTS", SANDBOX_COMPONENTS},
                                                  {"QMX_MESSAGE_BOARD", folder_ / "board"},
                                                  {"QMX_SYSTEM_DRIVE", folder_ / "drive"},
                                                  {"QMX_TRACE", ""},
                                                  {"LC_ALL", "C"}};

 private:
  // Made once: a copy only reads it.
  static const std::string& ErpFile() {
    static const TempFolder folder;
    static const std::string file = [] {
      const Process made =
          test::Run(ORVAN_SANDBOX, {"make", folder / "orvan.db", "--seed", "1", "--service-types", "3"});
      if (made.status != 0) throw std::runtime_error("no sandbox ERP: " + made.err);
      return folder / "orvan.db";
    }();
    return file;
  }

  template <typename Work>
  void OnDatabase(Work&& work) {
    const auto connection = database_.CreateConnection("ADODB.Connection");
    connection->Open("Provider=SQLite;Mode=Create;Data Source=" + (folder_ / "local.db"), "", "");
    work(*connection);
    connection->Close();
  }

  SqliteDriver sqlite_;
  Database database_{{&sqlite_}};
};

}  // namespace qmx::test
