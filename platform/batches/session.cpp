#include "platform/batches/session.h"

#include <utility>

#include "platform/batches/insert.h"
#include "platform/batches/statement.h"

namespace qmx {

BatchingDriverSession::BatchingDriverSession(std::unique_ptr<DriverSession> inner, SteadyClock& clock,
                                             RetryCount* allRetries)
    : inner_(std::move(inner)),
      clock_(clock),
      queue_(clock),
      retries_(clock, allRetries),
      group_(*inner_, clock, retries_),
      helper_(clock, mutex_, changed_, [this](Lock& lock) { return DoWhatIsDue(lock); }) {}

std::unique_ptr<DriverStatement> BatchingDriverSession::Prepare(const std::string& statement) {
  return ReadAgain(
      Ready(), [&] { return std::make_unique<BatchingDriverStatement>(*this, statement, inner_->Prepare(statement)); });
}

std::unique_ptr<DriverStatement> BatchingDriverSession::PrepareInsert(const RowInsert& insert) {
  return ReadAgain(Ready(), [&] { return std::make_unique<BatchingInsert>(*this, insert); });
}

TableDescription BatchingDriverSession::Describe(const std::string& table) {
  return ReadAgain(Ready(), [&] { return inner_->Describe(table); });
}

std::string BatchingDriverSession::Catalog() {
  return ReadAgain(Ready(), [&] { return inner_->Catalog(); });
}

void BatchingDriverSession::SelectCatalog(const std::string& name) {
  const Lock lock = Settled();
  Again([&] { inner_->SelectCatalog(name); });
}

void BatchingDriverSession::Timeout(std::chrono::seconds limit) {
  const Lock lock = Settled();
  Again([&] { inner_->Timeout(limit); });
  retries_.Limit(limit);
}

void BatchingDriverSession::Begin() {
  const Lock lock = Settled();
  group_.BeginOwn();
}

void BatchingDriverSession::Rollback() {
  Lock lock(mutex_);
  SendAll(lock);
  if (group_.IsWithinOwn()) failure_ = nullptr;  // of rows that are rolled back
  group_.RollbackOwn();
  RaiseFailure();
}

void BatchingDriverSession::Commit() {
  const Lock lock = Ready();
  group_.CommitOwn();
}

void BatchingDriverSession::EnableSavepoints() {
  const Lock lock = Settled();
  Again([&] { inner_->EnableSavepoints(); });
}

bool BatchingDriverSession::CanRollBack(const std::string& table) {
  return ReadAgain(Ready(), [&] { return inner_->CanRollBack(table); });
}

void BatchingDriverSession::MayGroup(bool may) {
  Lock lock(mutex_);
  SendAll(lock);
  group_.Allow(may);
  RaiseFailure();
  if (!may) group_.Commit();
  try {
    Again([&] { inner_->MayGroup(may); });
  } catch (const Error&) {
    if (!may) throw;  // else reads are only slower, or the next statement fails too
  }
}

void BatchingDriverSession::Retry(const std::function<void()>& work) { Again(work); }

void BatchingDriverSession::Close() {
  helper_.Stop();
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
  while (isSending_) clock_.Wait(changed_, lock);
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

bool BatchingDriverSession::Waits(RowSink& sink, std::span<const Variant* const> row) {
  Lock lock(mutex_);
  if (sink.IsUnheeded() && !MayCommitTogether(lock)) return false;
  while (queue_.IsFull()) clock_.Wait(changed_, lock);
  RaiseFailure();
  const bool followsQuickly = queue_.FollowsQuickly();
  if (queue_.IsFillingForAnother(sink)) {
    SendAll(lock);
    RaiseFailure();
  }
  if (!queue_.IsFilling()) {
    if (queue_.IsEmpty() && !followsQuickly && !sink.IsUnheeded()) return false;
    group_.Commit();
    helper_.Wake();
  }
  if (queue_.Add(sink, row)) changed_.notify_all();
  return true;
}

std::int64_t BatchingDriverSession::Write(DriverStatement& statement, const std::string& text,
                                          std::span<const Variant* const> values) {
  const Lock lock = Ready();
  if (group_.MayOpen() && !group_.IsOpen()) helper_.Wake();  // first: it commits the group also if the statement fails
  return group_.Write(statement, text, values);
}

bool BatchingDriverSession::MayCommitTogether(Lock& lock) {
  if (!group_.KnowsLimits()) SendAll(lock);  // so that the inner session can be asked
  return group_.MayOpen();
}

void BatchingDriverSession::Forget(const RowSink& sink) {
  Lock lock(mutex_);
  if (queue_.HasRowsOf(sink)) SendAll(lock);
}

void BatchingDriverSession::SendAll(Lock& lock) {
  queue_.EndBatch();
  while (queue_.HasEnded()) {
    if (isSending_) {
      clock_.Wait(changed_, lock);
    } else {
      SendOldest(lock);
    }
  }
}

void BatchingDriverSession::SendOldest(Lock& lock) {
  RowQueue::Batch& batch = queue_.Oldest();
  std::exception_ptr failure;
  isSending_ = true;
  lock.unlock();
  try {
    batch.sink->Send(batch.Values());
  } catch (...) {
    failure = std::current_exception();
  }
  batch.ForgetLongTexts();
  lock.lock();
  isSending_ = false;
  batch.sink->AskMostRows();
  queue_.RemoveOldest();
  if (failure) {
    queue_.Clear();  // the rows after a refused one are not added
    failure_ = failure;
  }
  changed_.notify_all();
}

void BatchingDriverSession::RaiseFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

std::optional<SteadyClock::TimePoint> BatchingDriverSession::DoWhatIsDue(Lock& lock) {
  constexpr SteadyClock::TimePoint kAtOnce;
  if (isSending_) return std::nullopt;  // the program does, and notifies the helper
  if (queue_.HasEnded()) {
    SendOldest(lock);
    return kAtOnce;
  }
  if (!queue_.IsFilling() && !group_.IsOpen()) return std::nullopt;
  const SteadyClock::TimePoint due = queue_.IsFilling() ? queue_.Due() : group_.Due();
  if (clock_.Now() < due) return due;
  if (queue_.IsFilling()) {
    queue_.EndBatch();
  } else {
    CommitGroup();
  }
  return kAtOnce;
}

void BatchingDriverSession::CommitGroup() {
  try {
    group_.Commit();
  } catch (...) {
    failure_ = std::current_exception();
  }
}

}  // namespace qmx
