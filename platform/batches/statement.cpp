#include "platform/batches/statement.h"

namespace qmx {

BatchingStatement::BatchingStatement(BatchingSession& session, std::unique_ptr<DriverStatement> inner)
    : session_(session), inner_(std::move(inner)) {}

BatchingStatement::~BatchingStatement() {
  const auto lock = session_.Locked();
  inner_.reset();
}

const std::vector<ColumnDescription>& BatchingStatement::Columns() const {
  const auto lock = session_.Locked();
  return inner_->Columns();
}

void BatchingStatement::Bind(std::size_t parameter, const Variant& value) {
  const auto lock = session_.Locked();
  inner_->Bind(parameter, value);
}

bool BatchingStatement::Step() {
  const auto lock = session_.Ready();
  return inner_->Step();
}

Variant BatchingStatement::Value(std::size_t column) {
  const auto lock = session_.Locked();
  return inner_->Value(column);
}

void BatchingStatement::Reset() noexcept {
  const auto lock = session_.Locked();
  inner_->Reset();
}

}  // namespace qmx
