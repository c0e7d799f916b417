// An open database file of SQLite, or an open folder of them with one of its files selected or none.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database_driver.h"
#include "platform/sqlite/deadline.h"
#include "platform/transaction_state.h"

struct sqlite3;

namespace qmx {

enum class SqliteMode {
  Write,   // the file exists
  Create,  // creates a missing file
  Read     // the file exists, and may be read-only
};

class SqliteDriverSession : public DriverSession {
 public:
  SqliteDriverSession(const std::filesystem::path& source, SqliteMode mode);

  std::unique_ptr<DriverStatement> Prepare(const std::string& statement) override;
  TableDescription Describe(const std::string& table) override;
  std::string QuoteIdentifier(const std::string& name) const override;
  std::string System() const override { return "SQLite"; }
  bool KeepsMomentsAsTexts() const override { return true; }
  std::string Catalog() override;
  void SelectCatalog(const std::string& name) override;
  void Timeout(std::chrono::seconds limit) override;
  void Begin() override;
  void Rollback() override;
  void Commit() override;
  void Close() override;
  bool LocksWholeDatabase() const override { return true; }
  GroupLimits Grouping() override;

 private:
  struct Closer {
    void operator()(sqlite3* handle) const;
  };
  using Handle = std::unique_ptr<sqlite3, Closer>;

  Handle OpenFile(const std::filesystem::path& file);
  void Configure(sqlite3* opened);
  sqlite3* Selected() const;      // raises if a folder is open and none of its files is selected
  bool HoldsTransaction() const;  // as SQLite reports it, which may end a transaction by itself
  void Run(const char* transactionStatement);
  std::vector<std::string> UniqueKey(const std::string& table, const std::set<std::string>& required);

  std::filesystem::path source_;
  SqliteMode mode_;
  bool isFolder_;
  std::string catalog_;
  Deadline deadline_;
  TransactionState transaction_;
  Handle handle_;
  std::map<std::string_view, std::unique_ptr<DriverStatement>> transactionStatements_;  // prepared, by their texts
};

}  // namespace qmx
