#include "platform/batches/insert.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/error.h"
#include "platform/execution.h"
#include "platform/savepoint.h"

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
  auto bound = bound_.begin();
  for (const Variant& value : row) {
    if (value.IsEmpty()) continue;
    if (bound == bound_.end()) throw std::out_of_range("more values than the statement has columns");
    *bound++ = &value;
  }
  return static_cast<std::size_t>(bound - bound_.begin());
}

bool BatchingInsert::Step() {
  if (mayWait_ && !many_) {
    many_ = session_.ReadAgain(session_.Ready(), [&] {
      return insert_.isUnheeded ? RowsInValues(session_.Inner(), insert_) : session_.Inner().PrepareRows(insert_);
    });
    AskMostRows();
  }
  affected_ = 1;
  if (mayWait_ && session_.Waits(*this, bound_)) return false;
  affected_ = insert_.isUnheeded ? WriteAlone() : session_.Write(*one_, text_, bound_);
  return false;
}

// Not in a group, whose rows a refusal would take back.
std::int64_t BatchingInsert::WriteAlone() {
  const auto lock = session_.Settled();
  return session_.AgainUnlessInVain([&] { return Executed(*one_, bound_); });
}

void BatchingInsert::Send(std::span<const Variant> values) {
  if (insert_.isUnheeded) return SendAllButRefused(values);
  while (!values.empty()) values = values.subspan(SendTogether(values) * bound_.size());
}

void BatchingInsert::SendAllButRefused(std::span<const Variant> values) {
  if (CommitTogether(values)) return;
  for (; !values.empty(); values = values.subspan(bound_.size())) {
    try {
      session_.AgainUnlessInVain([&] { ExecuteWith(values.first(bound_.size())); });
    } catch (const std::exception&) {
      // This row is lost. The next one is tried.
    }
  }
}

bool BatchingInsert::CommitTogether(std::span<const Variant> values) {
  DriverSession& session = session_.Inner();
  std::exception_ptr loss;
  const auto commit = [&] {
    session.Begin();
    try {
      for (auto rest = values; !rest.empty();) rest = rest.subspan(many_->Add(rest) * bound_.size());
      session.Commit();
    } catch (...) {
      try {
        session_.Again([&] { session.Rollback(); });
      } catch (...) {
        loss = std::current_exception();
        return;
      }
      throw;
    }
  };
  try {
    session_.AgainUnlessInVain(commit);
  } catch (const std::exception&) {
    return false;
  }
  if (loss) std::rethrow_exception(loss);  // rows may be saved, so none is sent again
  return true;
}

// In the program's own transaction a savepoint lets the rows be sent again: some systems refuse everything after a
// refused statement.
std::size_t BatchingInsert::SendTogether(std::span<const Variant> values) {
  const std::size_t rows = values.size() / bound_.size();
  if (rows > 1) {
    std::optional<Savepoint> savepoint;
    if (session_.IsWithinOwn()) savepoint.emplace(session_.Inner());
    try {
      const std::size_t sent = session_.Again([&] { return many_->Add(values); });
      if (savepoint) savepoint->Release();
      return sent;
    } catch (Error& error) {
      // Sent alone, each row would wait as long again.
      if (error.Number() == errors::kTimeout) {
        insert_.describe(error, values.first(bound_.size()));
        throw;
      }
      // If the database has ended the transaction, the rows would be saved outside of it.
      if (savepoint && !savepoint->RollBack()) {
        insert_.describe(error, values.first(bound_.size()));
        error.With("refused row", "one of " + std::to_string(rows) + ", from that key on");
        throw;
      }
    }
  }
  SendOneByOne(values);
  return rows;
}

void BatchingInsert::SendOneByOne(std::span<const Variant> values) {
  for (; !values.empty(); values = values.subspan(bound_.size())) {
    const std::span<const Variant> row = values.first(bound_.size());
    try {
      SendAlone(row);
    } catch (Error& error) {
      insert_.describe(error, row);
      throw;
    }
  }
}

void BatchingInsert::SendAlone(std::span<const Variant> row) {
  session_.Again([&] { ExecuteWith(row); });
}

void BatchingInsert::ExecuteWith(std::span<const Variant> row) {
  Execution execution(*one_);
  std::size_t parameter = 0;
  for (const Variant& value : row) one_->Bind(parameter++, value);
  execution.Run();
}

}  // namespace qmx
