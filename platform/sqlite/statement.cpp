#include "platform/sqlite/statement.h"

#include <sqlite3.h>

#include <limits>
#include <new>
#include <utility>

#include "platform/sqlite/deadline.h"
#include "platform/sqlite/errors.h"
#include "platform/sqlite/types.h"
#include "platform/transaction_state.h"

namespace qmx {
namespace {

using Kind = Variant::Kind;

// Converts an integer to its column's type, unless it does not fit.
Variant FromInteger(std::int64_t value, Kind type) {
  const auto fits = [&](auto smallest, auto largest) { return value >= smallest && value <= largest; };
  if (type == Kind::Boolean) return value != 0;
  if (type == Kind::Double) return static_cast<double>(value);
  if (type == Kind::UInt8 && fits(0, std::numeric_limits<std::uint8_t>::max())) return static_cast<std::uint8_t>(value);
  using Small = std::numeric_limits<std::int16_t>;
  if (type == Kind::Int16 && fits(Small::min(), Small::max())) return static_cast<std::int16_t>(value);
  using Usual = std::numeric_limits<std::int32_t>;
  if (fits(Usual::min(), Usual::max())) return static_cast<std::int32_t>(value);
  return static_cast<double>(value);
}

Variant FromText(std::string_view text, Kind type) {
  if (type == Kind::DateTime) {
    if (const std::optional<DateTime> moment = DateTime::Parse(text)) return *moment;
  }
  return text;
}

}  // namespace

void SqliteDriverStatement::Finalizer::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

SqliteDriverStatement::SqliteDriverStatement(sqlite3* handle, Deadline& deadline, const TransactionState& transaction,
                                             const std::string& text)
    : handle_(handle), deadline_(deadline), transaction_(transaction) {
  transaction_.RequireKnown();
  deadline_.Start();
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(handle_, text.c_str(), static_cast<int>(text.size() + 1), &statement, nullptr);
  statement_.reset(statement);
  if (code != SQLITE_OK) RaiseFailure();
  if (!statement) throw Error(errors::kCommand, "SQLite", "The text holds no statement.");
  DescribeColumns();
}

void SqliteDriverStatement::DescribeColumns() {
  columns_.clear();
  for (int column = 0; column < sqlite3_column_count(statement_.get()); ++column) {
    const char* name = sqlite3_column_name(statement_.get(), column);
    const char* type = sqlite3_column_decltype(statement_.get(), column);
    if (!name) throw std::bad_alloc();
    columns_.push_back({name, type ? KindOfDeclaredType(type) : Kind::Empty});
  }
}

void SqliteDriverStatement::Bind(std::size_t parameter, const Variant& value) {
  sqlite3_stmt* statement = statement_.get();
  const int index = static_cast<int>(parameter) + 1;
  const auto bindText = [&](const std::string& text) {  // the text stays at its address until Reset
    return sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
  };
  int code = SQLITE_OK;
  switch (value.GetKind()) {
    case Kind::Empty:
    case Kind::Null:
      code = sqlite3_bind_null(statement, index);
      break;
    case Kind::Boolean:
      code = sqlite3_bind_int(statement, index, value.ToBoolean() ? 1 : 0);
      break;
    case Kind::UInt8:
    case Kind::Int16:
    case Kind::Int32:
      code = sqlite3_bind_int(statement, index, value.ToInt32());
      break;
    case Kind::Double:
      code = sqlite3_bind_double(statement, index, value.ToDouble());
      break;
    case Kind::Text:
      code = bindText(*value.IfText());
      break;
    case Kind::DateTime:
      if (texts_.size() <= parameter) texts_.resize(static_cast<std::size_t>(sqlite3_bind_parameter_count(statement)));
      code = bindText(texts_.at(parameter) = value.ToDateTime().ToFullText());
      break;
    case Kind::Object:
      value.ToText();  // raises type mismatch: an object has no text
      break;
  }
  if (code != SQLITE_OK) RaiseFailure();
}

bool SqliteDriverStatement::Step() {
  if (!isRunning_) transaction_.RequireKnown();
  const bool isFirst = !std::exchange(isRunning_, true);
  if (isFirst) {
    RequireTransaction();
    deadline_.Start();
    changesBefore_ = sqlite3_total_changes64(handle_);
  }
  const int code = sqlite3_step(statement_.get());
  if (isFirst) {
    const int preparations = sqlite3_stmt_status(statement_.get(), SQLITE_STMTSTATUS_REPREPARE, 0);
    if (std::exchange(preparations_, preparations) != preparations) DescribeColumns();
  }
  if (code == SQLITE_ROW) return true;
  isRunning_ = false;
  if (code != SQLITE_DONE) RaiseFailure();
  affected_ = sqlite3_total_changes64(handle_) == changesBefore_ ? 0 : sqlite3_changes64(handle_);
  return false;
}

// After some failures SQLite rolls back by itself. What follows would be saved by itself.
void SqliteDriverStatement::RequireTransaction() {
  if (!transaction_.IsOpen() || sqlite3_get_autocommit(handle_) == 0) return;
  isRunning_ = false;
  throw Error(errors::kProviderUnspecified, "SQLite",
              "The database rolled the transaction back; nothing of it is saved.");
}

Variant SqliteDriverStatement::Value(std::size_t column) {
  sqlite3_stmt* statement = statement_.get();
  const int index = static_cast<int>(column);
  const int type = sqlite3_column_type(statement, index);
  switch (type) {
    case SQLITE_NULL:
      return Variant::Null();
    case SQLITE_INTEGER:
      return FromInteger(sqlite3_column_int64(statement, index), columns_[column].type);
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, index);
    default:
      return FromText(Text(index, type), columns_[column].type);
  }
}

void SqliteDriverStatement::Reset() noexcept {
  sqlite3_reset(statement_.get());
  isRunning_ = false;
}

void SqliteDriverStatement::RaiseFailure() const {
  Error failure = SqliteError(handle_);
  if (failure.Number() != errors::kTimeout) throw failure;
  const bool stopped = (sqlite3_errcode(handle_) & 0xff) == SQLITE_INTERRUPT;
  Error timeout(failure.Number(), failure.Source(),
                (stopped ? "The statement was stopped: it took longer than "
                         : "The database stayed locked by another program for longer than ") +
                    std::to_string(deadline_.Limit().count()) + " seconds (" + failure.Description() + ")");
  for (const auto& [what, value] : failure.Details()) timeout.With(what, value);
  throw timeout;
}

std::string_view SqliteDriverStatement::Text(int column, int type) const {
  sqlite3_stmt* statement = statement_.get();
  const void* bytes = type == SQLITE_BLOB ? sqlite3_column_blob(statement, column)
                                          : static_cast<const void*>(sqlite3_column_text(statement, column));
  const int size = sqlite3_column_bytes(statement, column);
  if (!bytes && size > 0) throw std::bad_alloc();
  return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

}  // namespace qmx
