#include "platform/batches/insert.h"

#include <algorithm>
#include <bit>

#include "platform/error.h"

namespace qmx {
namespace {

// Leaves a statement as it found it.
class Execution {
 public:
  explicit Execution(DriverStatement& statement) : statement_(statement) {}
  ~Execution() { statement_.Reset(); }
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

 private:
  DriverStatement& statement_;
};

}  // namespace

BatchingInsert::BatchingInsert(BatchingSession& session, RowInsert insert)
    : session_(session),
      insert_(std::move(insert)),
      mostRows_(std::clamp<std::size_t>(std::bit_floor(kMostParameters / insert_.columns), 1, 1u << (kSizes - 1))),
      bound_(insert_.columns) {
  StatementFor(1);
}

BatchingInsert::~BatchingInsert() {
  const auto lock = session_.Locked();
  session_.Forget(*this);
  for (auto& statement : statements_) statement.reset();
}

void BatchingInsert::Bind(std::size_t parameter, const Variant& value) { bound_.at(parameter) = &value; }

bool BatchingInsert::Step() {
  const auto lock = mayWait_ ? session_.ReadyFor(*this) : session_.Ready();
  if (session_.ShouldWait() && mayWait_) {
    Wait();
    return false;
  }
  DriverStatement& statement = StatementFor(1);
  const Execution execution(statement);
  for (std::size_t column = 0; column < bound_.size(); ++column) statement.Bind(column, *bound_[column]);
  Run(statement);
  return false;
}

void BatchingInsert::Wait() {
  const std::size_t start = waitingRows_ * insert_.columns;
  if (waiting_.size() < start + insert_.columns) waiting_.resize(start + insert_.columns);
  for (std::size_t column = 0; column < bound_.size(); ++column) waiting_[start + column] = *bound_[column];
  if (++waitingRows_ == 1) session_.Waits(*this);
  if (waitingRows_ == mostRows_) session_.SendNow();
}

void BatchingInsert::Send() {
  const std::size_t count = std::exchange(waitingRows_, 0);
  for (std::size_t first = 0; first < count;) {
    const std::size_t size = std::bit_floor(std::min(count - first, mostRows_));
    SendTogether(first, size);
    first += size;
  }
}

void BatchingInsert::SendTogether(std::size_t first, std::size_t size) {
  if (size == 1) return SendOneByOne(first, 1);
  try {
    DriverStatement& statement = StatementFor(size);
    const Execution execution(statement);
    std::size_t parameter = 0;
    for (std::size_t row = first; row < first + size; ++row) {
      for (const Variant& value : WaitingRow(row)) statement.Bind(parameter++, value);
    }
    Run(statement);
    return;
  } catch (Error& error) {
    // Each row would wait as long again; sent alone, the first one would have met the same.
    if (error.Number() == errors::kTimeout) {
      insert_.describe(error, WaitingRow(first));
      throw;
    }
  }
  SendOneByOne(first, size);
}

void BatchingInsert::SendOneByOne(std::size_t first, std::size_t count) {
  for (std::size_t row = first; row < first + count; ++row) {
    try {
      DriverStatement& statement = StatementFor(1);
      const Execution execution(statement);
      std::size_t parameter = 0;
      for (const Variant& value : WaitingRow(row)) statement.Bind(parameter++, value);
      Run(statement);
    } catch (Error& error) {
      insert_.describe(error, WaitingRow(row));
      throw;
    }
  }
}

std::span<const Variant> BatchingInsert::WaitingRow(std::size_t row) const {
  return std::span(waiting_).subspan(row * insert_.columns, insert_.columns);
}

DriverStatement& BatchingInsert::StatementFor(std::size_t size) {
  auto& statement = statements_[static_cast<std::size_t>(std::countr_zero(size))];
  if (!statement) statement = session_.Inner().Prepare(insert_.Text(size));
  return *statement;
}

void BatchingInsert::Run(DriverStatement& statement) {
  while (statement.Step()) continue;
}

}  // namespace qmx
