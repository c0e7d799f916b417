#include "platform/batches/insert.h"

#include <utility>

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
      one_(session_.Inner().Prepare(insert_.Text())),
      bound_(insert_.columns.size()) {}

BatchingInsert::~BatchingInsert() {
  const auto lock = session_.Locked();
  session_.Forget(*this);
  one_.reset();
  many_.reset();
}

void BatchingInsert::Bind(std::size_t parameter, const Variant& value) { bound_.at(parameter) = &value; }

bool BatchingInsert::Step() {
  const auto lock = mayWait_ ? session_.ReadyFor(*this) : session_.Ready();
  if (session_.ShouldWait() && mayWait_) {
    Wait();
    return false;
  }
  const Execution execution(*one_);
  for (std::size_t column = 0; column < bound_.size(); ++column) one_->Bind(column, *bound_[column]);
  while (one_->Step()) continue;
  return false;
}

void BatchingInsert::Wait() {
  if (!many_) many_ = session_.Inner().PrepareRows(insert_);
  const std::size_t start = waitingRows_ * bound_.size();
  if (waiting_.size() < start + bound_.size()) waiting_.resize(start + bound_.size());
  for (std::size_t column = 0; column < bound_.size(); ++column) {
    waiting_[start + column] = *bound_[column];
    if (const std::string* text = bound_[column]->IfText()) waitingBytes_ += text->size();
  }
  if (++waitingRows_ == 1) session_.Waits(*this);
  if (waitingRows_ >= many_->Most() || waitingBytes_ >= kMostBytes) session_.SendNow();
}

void BatchingInsert::Send() {
  waitingBytes_ = 0;
  const std::size_t count = std::exchange(waitingRows_, 0);
  for (std::size_t first = 0; first < count;) first += SendTogether(first, count - first);
}

std::size_t BatchingInsert::SendTogether(std::size_t first, std::size_t count) {
  try {
    if (count > 1) return many_->Add(WaitingRows(first, count));
  } catch (Error& error) {
    // Each row would wait as long again; sent alone, the first one would have met the same.
    if (error.Number() == errors::kTimeout) {
      insert_.describe(error, WaitingRows(first, 1));
      throw;
    }
  }
  SendOneByOne(first, count);
  return count;
}

void BatchingInsert::SendOneByOne(std::size_t first, std::size_t count) {
  for (std::size_t row = first; row < first + count; ++row) {
    try {
      const Execution execution(*one_);
      std::size_t parameter = 0;
      for (const Variant& value : WaitingRows(row, 1)) one_->Bind(parameter++, value);
      while (one_->Step()) continue;
    } catch (Error& error) {
      insert_.describe(error, WaitingRows(row, 1));
      throw;
    }
  }
}

std::span<const Variant> BatchingInsert::WaitingRows(std::size_t first, std::size_t count) const {
  return std::span(waiting_).subspan(first * bound_.size(), count * bound_.size());
}

}  // namespace qmx
