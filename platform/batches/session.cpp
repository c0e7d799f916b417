#include "platform/batches/session.h"

#include <algorithm>
#include <utility>

#include "platform/batches/insert.h"
#include "platform/batches/statement.h"

namespace qmx {
namespace {

// A value keeps the room of the longest text that it ever held: one long text in each batch, in another row each time,
// would in the end be one in every row.
void ForgetLongTexts(std::vector<Variant>& values) {
  std::size_t room = 0;
  for (const Variant& value : values) {
    if (const std::string* text = value.IfText()) room += text->capacity();
  }
  if (room > 2 * BatchingDriverSession::kMostBytes) values.clear();
}

}  // namespace

BatchingDriverSession::BatchingDriverSession(std::unique_ptr<DriverSession> inner)
    : inner_(std::move(inner)), group_(*inner_) {}

BatchingDriverSession::~BatchingDriverSession() { StopHelper(); }

std::unique_ptr<DriverStatement> BatchingDriverSession::Prepare(const std::string& statement) {
  return Read(Ready(),
              [&] { return std::make_unique<BatchingDriverStatement>(*this, statement, inner_->Prepare(statement)); });
}

std::unique_ptr<DriverStatement> BatchingDriverSession::PrepareInsert(const RowInsert& insert) {
  return Read(Ready(), [&] { return std::make_unique<BatchingInsert>(*this, insert); });
}

TableDescription BatchingDriverSession::Describe(const std::string& table) {
  return Read(Ready(), [&] { return inner_->Describe(table); });
}

std::string BatchingDriverSession::Catalog() {
  return Read(Ready(), [&] { return inner_->Catalog(); });
}

void BatchingDriverSession::SelectCatalog(const std::string& name) {
  const Lock lock = Settled();
  inner_->SelectCatalog(name);
}

void BatchingDriverSession::Timeout(std::chrono::seconds limit) {
  const Lock lock = Settled();
  inner_->Timeout(limit);
}

void BatchingDriverSession::Begin() {
  const Lock lock = Settled();
  inner_->Begin();
  isWithinBegin_ = true;
}

void BatchingDriverSession::Rollback() {
  Lock lock(mutex_);
  SendAll(lock);
  if (std::exchange(isWithinBegin_, false)) failure_ = nullptr;  // of rows that are taken back
  try {
    inner_->Rollback();
  } catch (...) {
    group_.Lose();
    throw;
  }
  RaiseFailure();
}

void BatchingDriverSession::Commit() {
  const Lock lock = Ready();
  if (mayGroup_ && !isWithinBegin_) return;
  group_.Commit();  // none is open, but a lost one raises
  isWithinBegin_ = false;
  inner_->Commit();
}

void BatchingDriverSession::MayGroup(bool may) {
  Lock lock(mutex_);
  SendAll(lock);
  mayGroup_ = may;
  RaiseFailure();
  if (!may) group_.Commit();
}

void BatchingDriverSession::Close() {
  StopHelper();
  try {
    Settled();
  } catch (...) {
    inner_->Close();
    throw;
  }
  inner_->Close();
}

BatchingDriverSession::Lock BatchingDriverSession::Locked() {
  Lock lock(mutex_);
  changed_.wait(lock, [&] { return !isSending_; });
  return lock;
}

BatchingDriverSession::Lock BatchingDriverSession::Ready() {
  Lock lock(mutex_);
  SendAll(lock);
  RaiseFailure();
  return lock;
}

BatchingDriverSession::Lock BatchingDriverSession::Settled() {
  Lock lock = Ready();
  group_.Commit();
  return lock;
}

bool BatchingDriverSession::Waits(BatchingInsert& insert, std::span<const Variant* const> row) {
  Lock lock(mutex_);
  changed_.wait(lock, [&] { return full_ < kBatches; });
  RaiseFailure();
  const Clock::time_point now = Clock::now();
  const bool isSoon = now - std::exchange(lastRow_, now) < kLongestWait;
  if (Filling().rows > 0 && Filling().insert != &insert) {
    SendAll(lock);
    RaiseFailure();
  }
  Batch& batch = Filling();
  if (batch.rows == 0) {
    if (full_ == 0 && !isSoon) return false;
    group_.Commit();
    batch.insert = &insert;
    batch.bytes = 0;
    batch.due = now + kLongestWait;
    StartHelper();
  }
  const std::size_t start = batch.rows * row.size();
  if (batch.values.size() < start + row.size()) batch.values.resize(start + row.size());
  for (std::size_t column = 0; column < row.size(); ++column) {
    batch.values[start + column] = *row[column];
    if (const std::string* text = row[column]->IfText()) batch.bytes += text->size();
  }
  if (++batch.rows >= insert.MostRows() || batch.bytes >= kMostBytes) {
    ++full_;
    changed_.notify_all();
  }
  return true;
}

std::int64_t BatchingDriverSession::Write(DriverStatement& statement, const std::string& text,
                                          std::span<const Variant* const> values) {
  const Lock lock = Ready();
  const bool inGroup = mayGroup_ && !isWithinBegin_ && group_.IsPossible();
  if (!inGroup) group_.Commit();  // one that could not be committed before
  if (!inGroup) return Executed(statement, values);
  if (!group_.IsOpen()) StartHelper();  // to commit it in time, whatever fails in it
  return group_.Run(statement, text, values);
}

void BatchingDriverSession::Forget(const BatchingInsert& insert) {
  Lock lock(mutex_);
  const auto isIts = [&](const Batch& batch) { return batch.rows > 0 && batch.insert == &insert; };
  if (std::any_of(batches_.begin(), batches_.end(), isIts)) SendAll(lock);
}

void BatchingDriverSession::SendAll(Lock& lock) {
  if (full_ < kBatches && Filling().rows > 0) ++full_;
  while (full_ > 0) {
    if (isSending_) {
      changed_.wait(lock);
    } else {
      SendOldest(lock);
    }
  }
}

void BatchingDriverSession::SendOldest(Lock& lock) {
  Batch& batch = batches_[oldest_];
  std::exception_ptr failure;
  isSending_ = true;
  lock.unlock();
  try {
    batch.insert->Send(std::span(batch.values).first(batch.rows * batch.insert->Width()));
  } catch (...) {
    failure = std::current_exception();
  }
  ForgetLongTexts(batch.values);
  lock.lock();
  isSending_ = false;
  batch.insert->AskMostRows();
  batch.rows = 0;
  oldest_ = (oldest_ + 1) % kBatches;
  --full_;
  if (failure) {  // the rows behind the bad one are not added
    for (Batch& other : batches_) other.rows = 0;
    full_ = 0;
    failure_ = failure;
  }
  changed_.notify_all();
}

void BatchingDriverSession::RaiseFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void BatchingDriverSession::StartHelper() {
  if (!helper_.joinable()) helper_ = std::thread([this] { SendInTime(); });
  if (std::exchange(helperSleeps_, false)) changed_.notify_all();
}

void BatchingDriverSession::SendInTime() {
  Lock lock(mutex_);
  while (!stops_) {
    if (!isSending_ && full_ > 0) {
      SendOldest(lock);
      continue;
    }
    const bool isRow = !isSending_ && Filling().rows > 0;
    if (isSending_ || !(isRow || group_.IsOpen())) {
      helperSleeps_ = true;
      changed_.wait(lock);
      continue;
    }
    const Clock::time_point due = isRow ? Filling().due : group_.Due();
    if (Clock::now() < due) {
      changed_.wait_until(lock, due);
    } else if (isRow) {
      ++full_;
    } else {
      CommitGroup();
    }
  }
}

void BatchingDriverSession::CommitGroup() {
  try {
    group_.Commit();
  } catch (...) {
    failure_ = std::current_exception();
  }
}

void BatchingDriverSession::StopHelper() {
  {
    const Lock lock(mutex_);
    stops_ = true;
    changed_.notify_all();
  }
  if (helper_.joinable()) helper_.join();
}

}  // namespace qmx
