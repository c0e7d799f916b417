// Counts the rows of one table that record sets save: added ones and changed ones.
//
// A changed row counts also where it turns out to be as it was. What another observer is to hear is handed on to it.
#pragma once

#include <atomic>
#include <string>

#include "platform/database_observer.h"

namespace qmx {

class RowCounter : public DatabaseObserver {
 public:
  RowCounter(std::string table, std::atomic<std::int64_t>& rows, DatabaseObserver* next);  // borrowed; may be null

  void ConnectionOpened(std::string_view maskedText, const Error* error) override;
  void DefaultDatabaseSet(std::string_view value, const Error* error) override;
  void Executed(std::string_view statement, std::int64_t affected, const Error* error) override;
  void CommandTimeoutSet(int seconds, const Error* error) override;
  void ConnectionClosed(const Error* error) override;
  void RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                       std::optional<std::int64_t> rows, const Error* error) override;
  bool HearsOfColumns() const override { return next_ && next_->HearsOfColumns(); }
  void ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) override;
  void RecordsetCalled(int recordset, std::string_view operation, const Error* error) override;
  int NextRecordset() override;

 private:
  void Count(std::string_view operation);

  std::string table_;
  std::atomic<std::int64_t>& rows_;
  DatabaseObserver* next_;
  int recordsets_ = 0;

  int current_ = -1;        // the record set that was opened last on the table
  bool hasRow_ = false;     // it found one
  bool isPending_ = false;  // it has a new one that is not saved
};

}  // namespace qmx
