// The local table in an SQLite file.
#include <filesystem>
#include <functional>
#include <map>

#include "platform/sqlite/driver.h"
#include "schema/dialect.h"
#include "schema/local_tables.h"
#include "tests/faults/target_table.h"
#include "tests/support/row_texts.h"
#include "tests/support/temp_folder.h"

namespace qmx::test::faults {
namespace {

using OnConnection = std::function<void(Connection&)>;

class FileTable : public TargetTable {
 public:
  FileTable(std::string folder, const Rows& old) : folder_(std::move(folder)) {
    for (const Method method : {Method::Full, Method::Changed}) {
      std::filesystem::remove(File());
      OnFile(File(), ";Mode=Create", [&](Connection& connection) {
        for (const LocalTable& table : LocalTables()) connection.Execute(SqliteDialect().CreateTable(table));
        Fill(connection, old);
        connection.Execute(ControlRecord(method));
      });
      fresh_[method] = ReadFile(File());
    }
  }

  std::string ConnectionText() const override { return "Provider=SQLite;Data Source=" + File(); }
  std::string Database() const override { return "local"; }
  std::string Password() const override { return ""; }

  void BeginAnew(Method method) override {
    for (const char* ending : {"-wal", "-shm", "-journal"}) std::filesystem::remove(File() + ending);
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
      left.integrity = RowTexts(connection, "pragma integrity_check", 1).at(0);
      LookAtRows(connection, left);
    });
  }

 private:
  std::string File() const { return folder_ + "/local.db"; }

  void OnFile(const std::string& file, const std::string& mode, const OnConnection& work) {
    const auto connection = database_.CreateConnection("ADODB.Connection");
    connection->Open("Provider=SQLite;Data Source=" + file + mode, "", "");
    work(*connection);
    connection->Close();
  }

  std::string folder_;
  SqliteDriver sqlite_;
  qmx::Database database_{{&sqlite_}};
  std::map<Method, std::string> fresh_;
};

}  // namespace

std::unique_ptr<TargetTable> TableInAFile(const std::string& folder, const Rows& old) {
  return std::make_unique<FileTable>(folder, old);
}

}  // namespace qmx::test::faults
