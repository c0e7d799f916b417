#include "platform/stored_table.h"

#include <algorithm>
#include <numeric>

#include "platform/error.h"
#include "platform/execution.h"
#include "platform/join.h"
#include "platform/value_text.h"

namespace qmx {
namespace {

constexpr std::size_t kPreparedUpdates = 64;  // sets of changed columns with a prepared update

[[noreturn]] void RaiseRowChanged(std::int64_t hits) {
  const std::string what = hits == 0
                               ? "it was deleted, or its key was changed, meanwhile."
                               : "several rows are equal to it. Give the table a primary key, then copy it in full.";
  throw Error(errors::kRowChanged, "ADODB.Recordset", "The row cannot be written: " + what);
}

}  // namespace

StoredTable::StoredTable(DriverSession& session, const UnitOfWork& unit, std::string name)
    : session_(session), unit_(unit), name_(std::move(name)) {
  TableDescription description = session_.Describe(name_);
  spelling_ = std::move(description.name);
  quotedName_ = session_.QuoteIdentifier(spelling_);
  key_ = std::move(description.key);
  hasKey_ = !key_.empty();
  if (!hasKey_) {
    key_.resize(description.columns.size());
    std::iota(key_.begin(), key_.end(), 0);
  }
  layout_ = std::make_shared<const RowLayout>(std::move(description.columns));
}

std::int64_t StoredTable::Count() {
  return CountedBy("select count(*) from " + quotedName_, [](DriverStatement&) {});
}

std::int64_t StoredTable::Count(const Row& stored) {
  return CountedBy("select count(*) from " + quotedName_ + Condition(stored),
                   [&](DriverStatement& statement) { BindKey(statement, 0, stored); });
}

template <typename Bind>
std::int64_t StoredTable::CountedBy(const std::string& text, Bind&& bind) {
  std::int64_t count = 0;
  session_.Retry([&] {
    const auto statement = session_.Prepare(text);
    bind(*statement);
    statement->Step();
    count = static_cast<std::int64_t>(statement->Value(0).ToDouble());
  });
  return count;
}

void StoredTable::Insert(const Row& assigned, bool mayWait) {
  unit_.RequireNoFailure();
  const std::string* text = nullptr;
  try {
    Prepared& insert = InsertFor(assigned);
    text = &insert.text;
    Execution execution(*insert.statement);
    insert.statement->BindRow(assigned);
    if (mayWait) insert.statement->MayWait();
    execution.Run();
  } catch (Error& error) {
    error.With("table", name_).With("key", KeyText(assigned)).With("statement", text ? *text : "");
    throw;
  }
}

void StoredTable::Update(const Row& stored, const Row& changes) {
  unit_.RequireNoFailure();
  const std::string* text = nullptr;
  try {
    Prepared& update = UpdateFor(stored, changes);
    text = &update.text;
    Execution execution(*update.statement);
    BindKey(*update.statement, update.statement->BindRow(changes), stored);
    // Some servers count the rows that they changed, not those that they found.
    const auto hits = [&] {
      const std::int64_t changed = execution.Run();
      return changed == 0 ? Count(stored) : changed;
    };
    if (IsFoundByKey(stored) || unit_.IsOpen()) {
      if (const std::int64_t rows = hits(); rows != 1) RaiseRowChanged(rows);
      return;
    }
    session_.Retry([&] {
      session_.Begin();
      try {
        if (const std::int64_t rows = hits(); rows != 1) RaiseRowChanged(rows);
        session_.Commit();
      } catch (...) {
        update.statement->Reset();
        session_.Rollback();
        throw;
      }
    });
  } catch (Error& error) {
    error.With("table", name_).With("key", KeyText(stored)).With("statement", text ? *text : "");
    throw;
  }
}

Row StoredTable::Read(const Row& stored) {
  const std::string text = SelectAll() + Condition(stored);
  try {
    Row row;
    session_.Retry([&] {
      const auto statement = session_.Prepare(text);
      BindKey(*statement, 0, stored);
      if (!statement->Step()) RaiseRowChanged(0);
      row.clear();
      for (std::size_t column = 0; column < stored.size(); ++column) row.push_back(statement->Value(column));
      if (statement->Step()) RaiseRowChanged(2);
    });
    return row;
  } catch (Error& error) {
    error.With("table", name_).With("key", KeyText(stored)).With("statement", text);
    throw;
  }
}

std::string StoredTable::KeyText(const Row& row) const {
  std::string text;
  for (const std::size_t column : key_) {
    const Variant& value = row[column];
    if (value.IsEmpty()) continue;
    if (!text.empty()) text += ", ";
    text += layout_->Columns()[column].name + '=';
    text += ValueText(value);
  }
  return text;
}

StoredTable::Prepared& StoredTable::InsertFor(const Row& assigned) {
  const auto isAssigned = [](const Variant& value) { return !value.IsEmpty(); };
  if (!lastInsert_ || !std::ranges::equal(assigned, lastInsert_->first, {}, isAssigned)) {
    shape_.clear();
    for (const Variant& value : assigned) shape_.push_back(isAssigned(value));
    auto insert = inserts_.find(shape_);
    if (insert == inserts_.end()) insert = inserts_.emplace(shape_, NewInsert(assigned)).first;
    lastInsert_ = &*insert;
  }
  return lastInsert_->second;
}

StoredTable::Prepared StoredTable::NewInsert(const Row& assigned) {
  RowInsert insert;
  std::string columns;
  for (std::size_t column = 0; column < assigned.size(); ++column) {
    if (assigned[column].IsEmpty()) continue;
    AppendItem(columns, ",", Quoted(column));
    insert.columns.push_back(layout_->Columns()[column]);
  }
  // No statement that all databases know adds a row without any values.
  if (columns.empty()) {
    return PreparedOf("insert into " + quotedName_ + " (" + Quoted(0) + ") values (null)");
  }
  insert.table = spelling_;
  insert.into = "insert into " + quotedName_ + " (" + columns + ")";
  insert.describe = [this, shape = shape_, text = insert.Text()](Error& error, std::span<const Variant> values) {
    Row row(shape.size());
    for (std::size_t column = 0, next = 0; column < shape.size(); ++column) {
      if (shape[column]) row[column] = values[next++];
    }
    error.With("table", name_).With("key", KeyText(row)).With("statement", text);
  };
  std::string text = insert.Text();
  try {
    return {text, session_.PrepareInsert(insert)};
  } catch (Error& error) {
    error.With("statement", text);
    throw;
  }
}

StoredTable::Prepared& StoredTable::UpdateFor(const Row& stored, const Row& changes) {
  shape_.clear();
  for (const Variant& value : changes) shape_.push_back(!value.IsEmpty());
  for (const std::size_t column : key_) {
    shape_.push_back(stored[column].IsEmpty());
    shape_.push_back(stored[column].IsNull());
  }
  const auto found = updates_.find(shape_);
  if (found != updates_.end()) return found->second;
  std::string assignments;
  for (std::size_t column = 0; column < changes.size(); ++column) {
    if (!changes[column].IsEmpty()) AppendItem(assignments, ",", Quoted(column) + "=?");
  }
  std::string text = "update " + quotedName_ + " set " + assignments + Condition(stored);
  Prepared update = PreparedOf(std::move(text));
  if (updates_.size() >= kPreparedUpdates) updates_.clear();
  return updates_.emplace(shape_, std::move(update)).first->second;
}

StoredTable::Prepared StoredTable::PreparedOf(std::string text) {
  try {
    std::unique_ptr<DriverStatement> statement = session_.Prepare(text);
    return {std::move(text), std::move(statement)};
  } catch (Error& error) {
    error.With("statement", text);
    throw;
  }
}

std::string StoredTable::Condition(const Row& stored) const {
  std::string condition;
  for (const std::size_t column : key_) {
    const Variant& value = stored[column];
    if (value.IsEmpty()) continue;
    condition += (condition.empty() ? " where " : " and ") + Quoted(column);
    condition += value.IsNull() ? " is null" : IsMomentText(column) ? kIsMomentInEitherForm : "=?";
  }
  if (condition.empty()) RaiseRowChanged(2);  // without a condition every row would be meant
  return condition;
}

void StoredTable::BindKey(DriverStatement& statement, std::size_t parameter, const Row& stored) const {
  for (const std::size_t column : key_) {
    if (stored[column].IsEmpty() || stored[column].IsNull()) continue;
    statement.Bind(parameter++, stored[column]);
    if (IsMomentText(column)) statement.Bind(parameter++, stored[column]);
  }
}

bool StoredTable::IsMomentText(std::size_t column) const {
  return session_.KeepsMomentsAsTexts() && layout_->Columns()[column].type == Variant::Kind::DateTime;
}

bool StoredTable::IsFoundByKey(const Row& stored) const {
  const auto isKnown = [&](std::size_t column) { return !stored[column].IsEmpty() && !stored[column].IsNull(); };
  return hasKey_ && std::all_of(key_.begin(), key_.end(), isKnown);
}

std::string StoredTable::Quoted(std::size_t column) const {
  return session_.QuoteIdentifier(layout_->Columns()[column].name);
}

}  // namespace qmx
