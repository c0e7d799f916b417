#include "platform/recordset_cursor.h"

#include <algorithm>
#include <utility>

namespace qmx {
namespace {

// Converts a value to its column's type.
void ToColumnType(Variant& value, Variant::Kind type) {
  if (value.IsEmpty()) value = Variant::Null();
  if (value.IsNull()) return;
  if (type != Variant::Kind::Empty && value.GetKind() != type) value = value.ConvertedTo(type);
  if (!value.IsFinite()) {
    throw Error(errors::kOverflow, kRecordsetSource,
                "Overflow: " + value.ToText() + " is no number that a column can hold.");
  }
}

}  // namespace

RecordsetCursor::RecordsetCursor(std::shared_ptr<OpenConnection> session, const SqlText& source)
    : session_(std::move(session)), source_(source), pending_(session_->TakeRow()) {
  session_->RecordsetOpened();
}

RecordsetCursor::~RecordsetCursor() {
  session_->ReturnRow(std::move(pending_));
  if (!rows_.empty()) session_->ReturnRow(std::move(rows_.front()));
  session_->RecordsetClosed();
}

std::unique_ptr<RecordsetCursor> RecordsetCursor::OnTable(std::shared_ptr<OpenConnection> session,
                                                          const SqlText& table) {
  std::unique_ptr<RecordsetCursor> cursor(new RecordsetCursor(std::move(session), table));
  cursor->table_ = &cursor->session_->Table(table.Text());
  cursor->layout_ = cursor->table_->Layout();
  cursor->pending_.resize(cursor->layout_->Columns().size());
  return cursor;
}

std::unique_ptr<RecordsetCursor> RecordsetCursor::OnStatement(std::shared_ptr<OpenConnection> session,
                                                              const SqlText& statement) {
  std::unique_ptr<RecordsetCursor> cursor(new RecordsetCursor(std::move(session), statement));
  try {
    cursor->ReadRows(statement);
  } catch (Error& error) {
    error.With("statement", statement.Text());
    throw;
  }
  cursor->pending_.resize(cursor->layout_->Columns().size());
  return cursor;
}

void RecordsetCursor::RaiseNoSuchColumn(std::size_t column) const {
  throw Error(errors::kNoSuchColumn, kRecordsetSource,
              "There is no column number " + std::to_string(column) + ": the row has " +
                  std::to_string(layout_->Columns().size()) + " columns.");
}

void RecordsetCursor::RaiseNoSuchColumn(std::string_view name) const {
  const std::string column(name);
  throw Error(errors::kNoSuchColumn, kRecordsetSource,
              "There is no column \"" + column + "\" in \"" + source_.Text() + "\".")
      .With("column", column);
}

std::int64_t RecordsetCursor::Count() {
  return isRead_ ? static_cast<std::int64_t>(rows_.size()) : WritableTable().Count();
}

bool RecordsetCursor::IsEmpty() {
  if (pendingKind_ == Pending::NewRow) return false;
  ReadRowsOnce();
  return rows_.empty();
}

bool RecordsetCursor::IsAtEnd() {
  if (pendingKind_ == Pending::NewRow) return false;
  ReadRowsOnce();
  return position_ == rows_.size();
}

void RecordsetCursor::MoveFirst() {
  Save();
  if (!isRead_) ReadRows(WritableTable().SelectAll());
  if (rows_.empty()) throw Error(errors::kNoCurrentRow, kRecordsetSource, "There is no row to move to.");
  position_ = 0;
}

void RecordsetCursor::MoveNext() {
  Save();
  ReadRowsOnce();
  if (position_ == rows_.size())
    throw Error(errors::kNoCurrentRow, kRecordsetSource, "There is no row after the last one.");
  ++position_;
}

Variant RecordsetCursor::Value(std::size_t column) {
  ColumnAt(column);
  if (pendingKind_ != Pending::None && !pending_[column].IsEmpty()) return pending_[column];
  if (pendingKind_ == Pending::NewRow) return Variant::Null();
  Row& row = CurrentRow();
  // The cursor knows only the assigned columns of a row that it added. The database has filled in the rest.
  if (row[column].IsEmpty()) row = WritableTable().Read(row);
  return row[column];
}

void RecordsetCursor::Convert(std::size_t column, Variant& value) {
  const ColumnDescription& description = ColumnAt(column);
  try {
    ToColumnType(value, description.type);
  } catch (Error& error) {
    const std::string key = table_->KeyText(pendingKind_ == Pending::NewRow ? pending_ : CurrentRow());
    error.With("table", table_->Name()).With("column", description.name).With("key", key);
    throw;
  }
}

void RecordsetCursor::AddNew() {
  WritableTable();
  Save(true);
  session_->Driver();
  pendingKind_ = Pending::NewRow;
}

void RecordsetCursor::Save(bool mayWait) {
  if (pendingKind_ == Pending::None) return;
  session_->Driver();
  if (pendingKind_ == Pending::Edit) {
    SaveEdit();
  } else {
    SaveNewRow(mayWait);
  }
  Drop();
  if (observers_) observers_->ForEach([this](DatabaseObserver& observer) { observer.RowSaved(table_->Name()); });
}

void RecordsetCursor::SaveEdit() {
  Row& stored = rows_[position_];
  bool differs = false;
  for (std::size_t column = 0; column < stored.size(); ++column) {
    if (pending_[column].IsEmpty()) continue;
    if (pending_[column] == stored[column]) {
      pending_[column].Clear();
    } else {
      differs = true;
    }
  }
  if (!differs) return;
  WritableTable().Update(stored, pending_);
  hasWritten_ = true;
  for (std::size_t column = 0; column < stored.size(); ++column) {
    if (!pending_[column].IsEmpty()) stored[column] = std::move(pending_[column]);
  }
}

void RecordsetCursor::SaveNewRow(bool mayWait) {
  WritableTable().Insert(pending_, mayWait);
  hasWritten_ = true;
  // Unless the table was read, only the last added row is kept in memory.
  if (isRead_ || rows_.empty()) rows_.emplace_back(session_->TakeRow()).resize(pending_.size());
  rows_.back().swap(pending_);
  position_ = rows_.size() - 1;
}

void RecordsetCursor::Drop() {
  for (Variant& value : pending_) value.Clear();
  pendingKind_ = Pending::None;
}

void RecordsetCursor::Close() {
  if (!session_->IsOpen()) return;
  if (pendingKind_ == Pending::NewRow) Save();
  if (hasWritten_ && !session_->Unit().IsOpen()) session_->Driver().Commit();
}

void RecordsetCursor::ReadRows(const SqlText& statement) {
  session_->Driver().Retry([&] { TryToReadRows(statement); });
}

void RecordsetCursor::TryToReadRows(const SqlText& statement) {
  ConnectionStatement query = session_->Statement(statement);
  if (query.Columns().empty()) {
    throw Error(errors::kCommand, kRecordsetSource, "A record set needs a statement that gives rows.");
  }
  const std::optional<std::string> name = layout_ ? std::nullopt : query.TableOfRows();
  StoredTable* const table = name ? &session_->Table(*name) : nullptr;
  bool hasRow = query.Step();
  const std::vector<ColumnDescription>& columns = query.Columns();
  if (table && table->Layout()->HasNamesOf(columns)) table_ = table;
  if (!layout_) layout_ = table_ ? table_->Layout() : std::make_shared<const RowLayout>(columns);
  std::vector<Row> rows;
  for (; hasRow; hasRow = query.Step()) {
    Row& row = rows.emplace_back(session_->TakeRow());
    row.resize(columns.size());
    query.ReadRow(row);
  }
  rows_ = std::move(rows);
  isRead_ = true;
}

void RecordsetCursor::ReadRowsOnce() {
  if (!isRead_ && rows_.empty()) ReadRows(WritableTable().SelectAll());
}

Row& RecordsetCursor::CurrentRow() {
  ReadRowsOnce();
  if (position_ == rows_.size()) throw Error(errors::kNoCurrentRow, kRecordsetSource, "There is no current row.");
  return rows_[position_];
}

void RecordsetCursor::RaiseNotWritable() const {
  session_->Driver();
  throw Error(errors::kNotAllowedNow, kRecordsetSource,
              "The rows of this query are read-only: it does not show the rows of one table whole.")
      .With("statement", source_.Text());
}

}  // namespace qmx
