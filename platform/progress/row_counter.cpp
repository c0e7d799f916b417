#include "platform/progress/row_counter.h"

#include "platform/database.h"
#include "platform/names.h"
#include "platform/sql_statement.h"

namespace qmx {

RowCounter::RowCounter(std::string table, std::atomic<std::int64_t>& rows, DatabaseObserver* next)
    : table_(std::move(table)), rows_(rows), next_(next) {}

void RowCounter::ConnectionOpened(std::string_view maskedText, const Error* error) {
  if (next_) next_->ConnectionOpened(maskedText, error);
}

void RowCounter::DefaultDatabaseSet(std::string_view value, const Error* error) {
  if (next_) next_->DefaultDatabaseSet(value, error);
}

void RowCounter::Executed(std::string_view statement, std::int64_t affected, const Error* error) {
  if (next_) next_->Executed(statement, affected, error);
}

void RowCounter::CommandTimeoutSet(int seconds, const Error* error) {
  if (next_) next_->CommandTimeoutSet(seconds, error);
}

void RowCounter::ConnectionClosed(const Error* error) {
  if (next_) next_->ConnectionClosed(error);
}

void RowCounter::RecordsetOpened(int recordset, std::string_view source, int cursorType, int lockType, int options,
                                 std::optional<std::int64_t> rows, const Error* error) {
  if (next_) next_->RecordsetOpened(recordset, source, cursorType, lockType, options, rows, error);
  if (error) return;
  const std::optional<std::string> table = options == kCommandTable ? std::string(source) : TableOfRows(source);
  if (!table || !SameName(*table, table_)) return;
  current_ = recordset;
  hasRow_ = rows.value_or(0) > 0;
  isPending_ = false;
}

void RowCounter::ColumnSet(int recordset, std::string_view column, const Variant& value, const Error* error) {
  if (next_) next_->ColumnSet(recordset, column, value, error);
}

void RowCounter::RecordsetCalled(int recordset, std::string_view operation, const Error* error) {
  if (next_) next_->RecordsetCalled(recordset, operation, error);
  if (recordset == current_ && !error) Count(operation);
}

int RowCounter::NextRecordset() { return next_ ? next_->NextRecordset() : ++recordsets_; }

void RowCounter::Count(std::string_view operation) {
  const bool adds = operation == "AddNew";
  const bool saves = adds || operation == "Update" || operation == "Close";
  const bool changes = operation == "Update" && hasRow_;
  if (saves && (isPending_ || changes)) rows_.fetch_add(1, std::memory_order_relaxed);
  if (saves || operation == "CancelUpdate") isPending_ = adds;
}

}  // namespace qmx
