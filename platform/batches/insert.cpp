#include "platform/batches/insert.h"

#include <utility>

#include "platform/error.h"
#include "platform/execution.h"

namespace qmx {

BatchingInsert::BatchingInsert(BatchingDriverSession& session, RowInsert insert)
    : session_(session),
      insert_(std::move(insert)),
      text_(insert_.Text()),
      one_(session_.Inner().Prepare(text_)),
      bound_(insert_.columns.size()) {}

BatchingInsert::~BatchingInsert() {
  session_.Forget(*this);
  const auto lock = session_.Locked();
  one_.reset();
  many_.reset();
}

void BatchingInsert::Bind(std::size_t parameter, const Variant& value) { bound_.at(parameter) = &value; }

std::size_t BatchingInsert::BindRow(std::span<const Variant> row) {
  std::size_t parameter = 0;
  for (const Variant& value : row) {
    if (!value.IsEmpty()) bound_.at(parameter++) = &value;
  }
  return parameter;
}

bool BatchingInsert::Step() {
  if (mayWait_ && !many_) {
    const auto lock = session_.Ready();
    many_ = session_.Inner().PrepareRows(insert_);
    AskMostRows();
  }
  if (mayWait_ && session_.Waits(*this, bound_)) return false;
  session_.Write(*one_, text_, bound_);
  return false;
}

void BatchingInsert::Send(std::span<const Variant> values) {
  while (!values.empty()) values = values.subspan(SendTogether(values) * bound_.size());
}

std::size_t BatchingInsert::SendTogether(std::span<const Variant> values) {
  const std::size_t rows = values.size() / bound_.size();
  try {
    if (rows > 1) return many_->Add(values);
  } catch (Error& error) {
    // Sent alone, each row would wait as long again.
    if (error.Number() == errors::kTimeout) {
      insert_.describe(error, values.first(bound_.size()));
      throw;
    }
  }
  SendOneByOne(values);
  return rows;
}

void BatchingInsert::SendOneByOne(std::span<const Variant> values) {
  for (; !values.empty(); values = values.subspan(bound_.size())) {
    const std::span<const Variant> row = values.first(bound_.size());
    try {
      Execution execution(*one_);
      std::size_t parameter = 0;
      for (const Variant& value : row) one_->Bind(parameter++, value);
      execution.Run();
    } catch (Error& error) {
      insert_.describe(error, row);
      throw;
    }
  }
}

}  // namespace qmx
