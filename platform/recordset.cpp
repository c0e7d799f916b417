#include <limits>

#include "platform/database.h"
#include "platform/recordset_cursor.h"

namespace qmx {
namespace {

void RequireServed(int cursorType, int lockType, int options) {
  const bool served = cursorType == kCursorKeyset && lockType == kLockOptimistic &&
                      (options == kCommandText || options == kCommandTable);
  if (served) return;
  throw Error(
      errors::kInvalidCall, kRecordsetSource,
      "A record set opens with cursor type 1, lock type 3 and options 1 (a statement) or 2 (a table's name), not "
      "with " +
          std::to_string(cursorType) + ", " + std::to_string(lockType) + " and " + std::to_string(options) + ".");
}

}  // namespace

inline RecordsetCursor& Recordset::OpenCursor() const {
  if (!cursor_) throw Error(errors::kClosed, kRecordsetSource, "The record set is closed.");
  return *cursor_;
}

// Runs a call. An open unit of work learns of its failure.
template <typename Call>
decltype(auto) Recordset::Checked(Call&& call) const {
  return Noted(session_.get(), call);
}

Recordset::Recordset(DatabaseObservers observers)
    : observers_(std::move(observers)),
      columnsAreObserved_(observers_.HearOfColumns()),
      number_(observers_.NextRecordset()) {}

Recordset::~Recordset() = default;

void Recordset::Open(const SqlText& source, Connection& connection, int cursorType, int lockType, int options) {
  std::optional<std::int64_t> rows;
  const std::string text = observers_.IsEmpty() ? std::string() : source.Text();
  Observed(
      observers_,
      [&] {
        if (cursor_) throw Error(errors::kAlreadyOpen, kRecordsetSource, "The record set is open already.");
        RequireServed(cursorType, lockType, options);
        if (!connection.session_) throw Error(errors::kConnectionClosed, kRecordsetSource, "The connection is closed.");
        source.Check();
        source_ = source;
        session_ = connection.session_;
        Checked([&] {
          if (options == kCommandTable) {
            cursor_ = RecordsetCursor::OnTable(session_, source_);
          } else {
            cursor_ = RecordsetCursor::OnStatement(session_, source_);
            rows = cursor_->Count();
          }
        });
        cursor_->AnnounceTo(observers_);
        connection_ = &connection;
      },
      [&](DatabaseObserver& observer, const Error* error) {
        observer.RecordsetOpened(number_, text, cursorType, lockType, options, rows, error);
      });
}

void Recordset::Open(const SqlText& source, int cursorType, int lockType, int options) {
  if (!connection_) throw Error(errors::kConnectionClosed, kRecordsetSource, "The record set has no connection.");
  Open(source, *connection_, cursorType, lockType, options);
}

void Recordset::ActiveConnection(Connection& connection) {
  if (cursor_)
    throw Error(errors::kAlreadyOpen, kRecordsetSource, "The record set is open; its connection cannot change.");
  connection_ = &connection;
}

Connection* Recordset::ActiveConnection() const { return connection_; }

std::int32_t Recordset::recordcount() {
  return Checked([&] {
    const std::int64_t count = OpenCursor().Count();
    if (count > std::numeric_limits<std::int32_t>::max()) {
      throw Error(errors::kOverflow, kRecordsetSource, "Overflow: " + std::to_string(count) + " rows.");
    }
    return static_cast<std::int32_t>(count);
  });
}

bool Recordset::BOF() {
  return Checked([&] { return OpenCursor().IsEmpty(); });
}

bool Recordset::Eof() {
  return Checked([&] { return OpenCursor().IsAtEnd(); });
}

void Recordset::MoveFirst() {
  Tell("MoveFirst", [&] { OpenCursor().MoveFirst(); });
}

void Recordset::MoveNext() {
  Tell("MoveNext", [&] { OpenCursor().MoveNext(); });
}

Field Recordset::Fields(const Column& column) {
  const RecordsetCursor& cursor = OpenCursor();
  const RowLayout& layout = cursor.Layout();
  if (column.layout_ != layout.Number()) {
    const std::optional<std::size_t> index = layout.Find(column.name_);
    if (!index) Checked([&] { cursor.RaiseNoSuchColumn(column.name_); });
    column.layout_ = layout.Number();
    column.index_ = *index;
  }
  return Field(*this, column.index_);
}

Field Recordset::Fields(std::size_t index) {
  OpenCursor().ColumnAt(index);
  return Field(*this, index);
}

void Recordset::AddNew() {
  Tell("AddNew", [&] { OpenCursor().AddNew(); });
}

void Recordset::Update() {
  Tell("Update", [&] { OpenCursor().Save(); });
}

void Recordset::CancelUpdate() {
  Tell("CancelUpdate", [&] { OpenCursor().Drop(); });
}

int Recordset::State() const { return cursor_ ? kStateOpen : kStateClosed; }

void Recordset::Close() {
  Tell("Close", [&] {
    OpenCursor();
    const std::unique_ptr<RecordsetCursor> cursor = std::move(cursor_);
    cursor->Close();
  });
}

void Recordset::Assign(std::size_t index, Variant&& value) {
  if (columnsAreObserved_) return AssignAndTell(index, std::move(value));
  Checked([&] { OpenCursor().Assign(index, std::move(value)); });
}

void Recordset::AssignAndTell(std::size_t index, Variant&& value) {
  const Variant told = value;
  std::string name;
  Observed(
      observers_,
      [&] {
        Checked([&] {
          name = OpenCursor().ColumnAt(index).name;
          OpenCursor().Assign(index, std::move(value));
        });
      },
      [&](DatabaseObserver& observer, const Error* error) { observer.ColumnSet(number_, name, told, error); });
}

template <typename Step>
void Recordset::Tell(std::string_view operation, Step&& step) {
  Observed(
      observers_, [&] { Checked(step); },
      [&](DatabaseObserver& observer, const Error* error) { observer.RecordsetCalled(number_, operation, error); });
}

Variant Field::Value() const {
  return owner_.Checked([&] { return owner_.OpenCursor().Value(index_); });
}

std::string Field::Name() const {
  return owner_.Checked([&] { return owner_.OpenCursor().ColumnAt(index_).name; });
}

}  // namespace qmx
