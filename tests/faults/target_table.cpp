#include "tests/faults/target_table.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

#include "platform/database.h"
#include "platform/sqlite/driver.h"
#include "schema/dialect.h"
#include "schema/local_tables.h"
#include "tests/support/temp_folder.h"

namespace qmx::test::faults {
namespace {

using OnConnection = std::function<void(Connection&)>;

std::string Text(const Variant& value) { return value.IsNull() ? "null" : value.ToText(); }

// Each row's values, joined by "|".
Rows RowsOf(Connection& connection, const std::string& query, std::size_t columns) {
  Recordset records(nullptr);
  records.Open(query, connection, kCursorKeyset, kLockOptimistic, kCommandText);
  Rows rows;
  for (; !records.Eof(); records.MoveNext()) {
    std::string row;
    for (std::size_t column = 0; column < columns; ++column)
      row += (column > 0 ? "|" : "") + Text(records.Fields(column).Value());
    rows.push_back(row);
  }
  return rows;
}

void LookAtTable(Connection& connection, Left& left) {
  left.rows = RowsOf(connection, "select cstp, dsca, prod, ract from tsmdm030", 4);
  std::ranges::sort(left.rows, {}, [](const std::string& row) { return row.substr(0, row.find('|')); });
  const Rows control = RowsOf(connection, "select in_use, lutm from tstables where tablename = 'tsmdm030'", 2);
  const std::string record = control.size() == 1 ? control[0] : "no record|";
  left.inUse = record.substr(0, record.find('|'));
  left.lutm = record.substr(record.find('|') + 1);
}

std::string Insert(const std::string& row) {
  std::string values = row;
  for (std::size_t bar = values.find('|'); bar != std::string::npos; bar = values.find('|', bar)) {
    values.replace(bar, 1, "','");
  }
  return "insert into tsmdm030 (cstp, dsca, prod, ract) values ('" + values + "')";
}

std::string ControlRecord(Method method) {
  return "insert into tstables (tablename, in_use, syme, lutm) values ('tsmdm030', 0, " +
         std::to_string(static_cast<int>(method)) + ", '" + kOldTime + "')";
}

class FileTable : public TargetTable {
 public:
  FileTable(std::string folder, const Rows& old) : folder_(std::move(folder)) {
    for (const Method method : {Method::Full, Method::Changed}) {
      std::filesystem::remove(File());
      OnFile(File(), ";Mode=Create", [&](Connection& connection) {
        for (const LocalTable& table : LocalTables()) connection.Execute(SqliteDialect().CreateTable(table));
        for (const std::string& row : old) connection.Execute(Insert(row));
        connection.Execute(ControlRecord(method));
      });
      fresh_[method] = ReadFile(File());
    }
  }

  std::string ConnectionText() const override { return "Provider=SQLite;Data Source=" + File(); }
  std::string Password() const override { return ""; }

  void BeginAnew(Method method) override {
    RemoveJournal(File());
    WriteFile(File(), fresh_.at(method));
  }

  void Release() override {
    OnFile(File(), "", [](Connection& connection) { connection.Execute("update tstables set in_use = 0"); });
  }

  // On a copy, so that the next run finds what this one left.
  void LookAt(Left& left) override {
    const TempFolder aside(TempFolder::Place::InMemory);
    const std::string copy = aside / "local.db";
    WriteFile(copy, ReadFile(File()));
    if (std::filesystem::exists(File() + "-wal")) WriteFile(copy + "-wal", ReadFile(File() + "-wal"));
    OnFile(copy, "", [&](Connection& connection) {
      left.integrity = RowsOf(connection, "pragma integrity_check", 1).at(0);
      LookAtTable(connection, left);
    });
  }

 private:
  std::string File() const { return folder_ + "/local.db"; }

  static void RemoveJournal(const std::string& file) {
    for (const char* ending : {"-wal", "-shm", "-journal"}) std::filesystem::remove(file + ending);
  }

  void OnFile(const std::string& file, const std::string& mode, const OnConnection& work) {
    const auto connection = database_.CreateConnection("ADODB.Connection");
    connection->Open("Provider=SQLite;Data Source=" + file + mode, "", "");
    work(*connection);
    connection->Close();
  }

  std::string folder_;
  SqliteDriver sqlite_;
  Database database_{{&sqlite_}};
  std::map<Method, std::string> fresh_;
};

}  // namespace

std::unique_ptr<TargetTable> TableInAFile(const std::string& folder, const Rows& old) {
  return std::make_unique<FileTable>(folder, old);
}

}  // namespace qmx::test::faults
