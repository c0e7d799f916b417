// An open record set: its rows, the current row, and the pending change.
//
// `pending_` overlays the current row: the columns assigned so far, Empty elsewhere. A statement's
// rows are read at once. A table's rows are read when the first one is needed; until then only the last added row is
// kept.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/open_connection.h"

namespace qmx {

inline constexpr const char* kRecordsetSource = "ADODB.Recordset";  // of the errors of a record set

class RecordsetCursor {
 public:
  // The table's name and the statement are borrowed.
  static std::unique_ptr<RecordsetCursor> OnTable(std::shared_ptr<OpenConnection> session, const SqlText& table);
  static std::unique_ptr<RecordsetCursor> OnStatement(std::shared_ptr<OpenConnection> session,
                                                      const SqlText& statement);
  ~RecordsetCursor();
  RecordsetCursor(const RecordsetCursor&) = delete;
  RecordsetCursor& operator=(const RecordsetCursor&) = delete;

  const RowLayout& Layout() const { return *layout_; }
  const ColumnDescription& ColumnAt(std::size_t column) const {  // 3265 when there is none
    const std::vector<ColumnDescription>& columns = layout_->Columns();
    if (column >= columns.size()) RaiseNoSuchColumn(column);
    return columns[column];
  }
  [[noreturn]] void RaiseNoSuchColumn(std::size_t column) const;
  [[noreturn]] void RaiseNoSuchColumn(std::string_view name) const;

  std::int64_t Count();
  bool IsEmpty();
  bool IsAtEnd();
  void MoveFirst();
  void MoveNext();

  Variant Value(std::size_t column);
  void Assign(std::size_t column, Variant&& value) {
    const Variant::Kind type = ColumnAt(column).type;
    WritableTable();
    if (pendingKind_ != Pending::NewRow) CurrentRow();
    const bool fits = value.IsNull() || (value.GetKind() == type && value.IsFinite());
    if (!fits) Convert(column, value);
    pending_[column] = std::move(value);
    if (pendingKind_ != Pending::NewRow) pendingKind_ = Pending::Edit;
  }

  void AnnounceTo(const DatabaseObservers& observers) { observers_ = &observers; }  // saved rows; borrowed
  void AddNew();
  void Save(bool mayWait = false);  // mayWait: the driver may postpone the row
  void Drop();                      // the pending change
  void Close();

 private:
  enum class Pending { None, Edit, NewRow };

  RecordsetCursor(std::shared_ptr<OpenConnection> session, const SqlText& source);
  void ReadRows(const SqlText& statement);
  void TryToReadRows(const SqlText& statement);
  void ReadRowsOnce();
  void Convert(std::size_t column, Variant& value);
  void SaveEdit();
  void SaveNewRow(bool mayWait);
  Row& CurrentRow();
  StoredTable& WritableTable() {
    if (table_ && session_->IsOpen()) return *table_;
    RaiseNotWritable();
  }
  [[noreturn]] void RaiseNotWritable() const;

  std::shared_ptr<OpenConnection> session_;
  const DatabaseObservers* observers_ = nullptr;
  StoredTable* table_ = nullptr;  // the session's; null where the rows are read-only
  std::shared_ptr<const RowLayout> layout_;
  const SqlText& source_;  // for errors

  std::vector<Row> rows_;
  std::size_t position_ = 0;  // rows_.size() past the end
  bool isRead_ = false;

  Row pending_;
  Pending pendingKind_ = Pending::None;
  bool hasWritten_ = false;
};

}  // namespace qmx
