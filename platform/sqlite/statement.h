// A prepared statement of SQLite.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/database_driver.h"

struct sqlite3;
struct sqlite3_stmt;

namespace qmx {

class Deadline;
class TransactionState;

class SqliteDriverStatement : public DriverStatement {
 public:
  // All but the text are borrowed. The constructor and Step raise if the transaction's state is unknown.
  SqliteDriverStatement(sqlite3* handle, Deadline& deadline, const TransactionState& transaction,
                        const std::string& text);

  const std::vector<ColumnDescription>& Columns() const override { return columns_; }
  void Bind(std::size_t parameter, const Variant& value) override;
  bool Step() override;
  Variant Value(std::size_t column) override;
  std::int64_t RowsAffected() const override { return affected_; }
  void Reset() noexcept override;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const;
  };

  void DescribeColumns();
  void RequireTransaction();  // if the session has one open
  [[noreturn]] void RaiseFailure() const;
  std::string_view Text(int column, int type) const;  // until the next step

  sqlite3* handle_;
  Deadline& deadline_;
  const TransactionState& transaction_;
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
  std::vector<ColumnDescription> columns_;
  std::vector<std::string> texts_;  // of bound moments, by parameter
  std::int64_t affected_ = 0;
  std::int64_t changesBefore_ = 0;
  int preparations_ = 0;  // by SQLite itself, after changes of the tables
  bool isRunning_ = false;
};

}  // namespace qmx
