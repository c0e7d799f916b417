#include "platform/batches/statement.h"

#include <algorithm>

#include "platform/names.h"
#include "platform/sql_statement.h"

namespace qmx {
namespace {

bool Writes(std::string_view word) {
  return SameName(word, "insert") || SameName(word, "update") || SameName(word, "delete");
}

}  // namespace

BatchingDriverStatement::BatchingDriverStatement(BatchingDriverSession& session, const std::string& text,
                                                 std::unique_ptr<DriverStatement> inner)
    : session_(session),
      text_(text),
      writes_(Writes(FirstWord(text))),
      isSelect_(SameName(FirstWord(text), "select")),
      inner_(std::move(inner)) {}

BatchingDriverStatement::~BatchingDriverStatement() {
  const auto lock = session_.Locked();
  inner_.reset();
}

const std::vector<ColumnDescription>& BatchingDriverStatement::Columns() const {
  using Columns = const std::vector<ColumnDescription>&;
  return session_.Read(session_.Locked(), [&]() -> Columns { return inner_->Columns(); });
}

void BatchingDriverStatement::Bind(std::size_t parameter, const Variant& value) {
  if (writes_) {
    bound_.resize(std::max(bound_.size(), parameter + 1));
    bound_[parameter] = &value;
    return;
  }
  session_.Read(session_.Locked(), [&] { inner_->Bind(parameter, value); });
}

bool BatchingDriverStatement::Step() {
  if (writes_) {
    affected_ = session_.Write(*inner_, text_, bound_);
    return false;
  }
  const auto step = [&] { return inner_->Step(); };
  // The reader of the rows reads all of them again if the database asks for it.
  if (isSelect_) return session_.Read(session_.Ready(), step);
  // Any other statement could not be repeated with a group.
  return session_.ReadAgain(session_.Settled(), step);
}

Variant BatchingDriverStatement::Value(std::size_t column) {
  return session_.Read(session_.Locked(), [&] { return inner_->Value(column); });
}

void BatchingDriverStatement::ReadRow(std::span<Variant> row) {
  session_.Read(session_.Locked(), [&] { inner_->ReadRow(row); });
}

void BatchingDriverStatement::Reset() noexcept {
  if (writes_) return;  // it is reset as soon as it has run
  const auto lock = session_.Locked();
  inner_->Reset();
}

}  // namespace qmx
